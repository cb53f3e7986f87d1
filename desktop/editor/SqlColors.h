#pragma once

#include <Qsci/qscilexer.h>

#include <QColor>
#include <QFont>
#include <QString>
#include <memory>

namespace tessel {

/// The lexer for "sql", "json" or "xml"; null for anything else.
[[nodiscard]] std::unique_ptr<QsciLexer> LexerOf(const QString& language);

/// Gives a lexer made by LexerOf its font, and the colours of code where they can be read on the
/// ground; elsewhere that of the text.
void ColorCode(QsciLexer& lexer, const QFont& font, const QColor& ground, const QColor& text);

}  // namespace tessel
