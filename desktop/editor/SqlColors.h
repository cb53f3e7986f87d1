#pragma once

#include <Qsci/qscilexer.h>

#include <QColor>
#include <QFont>

namespace tessel {

/// Gives an SQL lexer its font, and the colours of SQL where they can be read on the
/// ground; elsewhere that of the text.
void ColorSql(QsciLexer& lexer, const QFont& font, const QColor& ground, const QColor& text);

}  // namespace tessel
