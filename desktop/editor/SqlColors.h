#pragma once

#include <Qsci/qscilexer.h>

#include <QColor>
#include <QFont>

namespace tessel {

/// Colours of SQL text that are readable on one kind of ground.
struct SqlColors {
  QColor keyword;
  QColor string;
  QColor number;
  QColor comment;
  QColor name;  ///< A quoted name.
  QColor matchedBrace;
  QColor unmatchedBrace;
};

/// The colours for a light or a dark ground.
[[nodiscard]] const SqlColors& SqlColorsOn(const QColor& ground);

/// Gives an SQL lexer its font and colours.
void ColorSql(QsciLexer& lexer, const QFont& font, const QColor& ground, const QColor& text);

}  // namespace tessel
