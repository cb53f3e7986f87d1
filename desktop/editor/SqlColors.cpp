#include "desktop/editor/SqlColors.h"

#include <Qsci/qscilexersql.h>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

QColor ColorOfStyle(int style, const Tokens& colors, const QColor& text) {
  switch (style) {
    case QsciLexerSQL::Comment:
    case QsciLexerSQL::CommentLine:
    case QsciLexerSQL::CommentLineHash:
    case QsciLexerSQL::CommentDoc: return colors.comment;
    case QsciLexerSQL::Number: return colors.number;
    case QsciLexerSQL::Keyword: return colors.keyword;
    case QsciLexerSQL::SingleQuotedString: return colors.string;
    default: return text;
  }
}

}  // namespace

void ColorSql(QsciLexer& lexer, const QFont& font, const QColor& ground, const QColor& text) {
  const Tokens& colors = TokensOn(ground);
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
