#include "desktop/editor/SqlColors.h"

#include <Qsci/qscilexersql.h>

#include "desktop/look/Colors.h"

namespace tessel {

namespace {

QColor ColorOfStyle(int style, const SqlColors& colors, const QColor& text) {
  switch (style) {
    case QsciLexerSQL::Comment:
    case QsciLexerSQL::CommentLine:
    case QsciLexerSQL::CommentLineHash:
    case QsciLexerSQL::CommentDoc: return colors.comment;
    case QsciLexerSQL::Number: return colors.number;
    case QsciLexerSQL::Keyword: return colors.keyword;
    case QsciLexerSQL::SingleQuotedString: return colors.string;
    case QsciLexerSQL::DoubleQuotedString:
    case QsciLexerSQL::QuotedIdentifier: return colors.name;
    default: return text;
  }
}

/// The colour where it can be read on the ground, else that of the text.
QColor ReadableOn(const QColor& ground, const QColor& color, const QColor& text) {
  const bool readable = Contrast(FromQColor(color), FromQColor(ground)) >= readableContrast;
  return readable ? color : text;
}

}  // namespace

const SqlColors& SqlColorsOn(const QColor& ground) {
  static const SqlColors onLight{QColor(0x00, 0x33, 0xB3), QColor(0xA0, 0x1E, 0x1E),
                                 QColor(0x00, 0x6B, 0x75), QColor(0x3A, 0x73, 0x3A),
                                 QColor(0x6F, 0x2D, 0x8C), QColor(0xC8, 0xDC, 0xFF),
                                 QColor(0xC0, 0x00, 0x00)};
  static const SqlColors onDark{QColor(0x7F, 0xB0, 0xFF), QColor(0xF0, 0xA0, 0x80),
                                QColor(0x6F, 0xD0, 0xC8), QColor(0x8C, 0xC2, 0x7E),
                                QColor(0xD4, 0xA6, 0xEC), QColor(0x35, 0x50, 0x80),
                                QColor(0xFF, 0x70, 0x70)};
  return IsDark(ground) ? onDark : onLight;
}

void ColorSql(QsciLexer& lexer, const QFont& font, const QColor& ground, const QColor& text) {
  const SqlColors& colors = SqlColorsOn(ground);
  QFont bold = font;
  bold.setBold(true);
  lexer.setDefaultFont(font);
  lexer.setDefaultPaper(ground);
  lexer.setDefaultColor(text);
  lexer.setPaper(ground, -1);
  lexer.setFont(font, -1);
  for (int style = 0; style <= QsciLexerSQL::QuotedOperator; ++style) {
    if (lexer.description(style).isEmpty()) continue;
    lexer.setColor(ReadableOn(ground, ColorOfStyle(style, colors, text), text), style);
  }
  lexer.setFont(bold, QsciLexerSQL::Keyword);
}

}  // namespace tessel
