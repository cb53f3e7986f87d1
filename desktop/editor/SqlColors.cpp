#include "desktop/editor/SqlColors.h"

#include <Qsci/qscilexerjson.h>
#include <Qsci/qscilexersql.h>
#include <Qsci/qscilexerxml.h>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int lastStyle = 127;

QColor ColorOfSql(int style, const Tokens& colors, const QColor& text) {
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

QColor ColorOfJson(int style, const Tokens& colors, const QColor& text) {
  switch (style) {
    case QsciLexerJSON::Property: return colors.keyword;
    case QsciLexerJSON::String:
    case QsciLexerJSON::EscapeSequence: return colors.string;
    case QsciLexerJSON::Number:
    case QsciLexerJSON::Keyword: return colors.number;
    case QsciLexerJSON::CommentLine:
    case QsciLexerJSON::CommentBlock: return colors.comment;
    case QsciLexerJSON::UnclosedString:
    case QsciLexerJSON::Error: return colors.error;
    default: return text;
  }
}

QColor ColorOfXml(int style, const Tokens& colors, const QColor& text) {
  switch (style) {
    case QsciLexerXML::Tag:
    case QsciLexerXML::UnknownTag:
    case QsciLexerXML::XMLTagEnd:
    case QsciLexerXML::XMLStart:
    case QsciLexerXML::XMLEnd: return colors.keyword;
    case QsciLexerXML::Attribute:
    case QsciLexerXML::UnknownAttribute: return colors.number;
    case QsciLexerXML::HTMLDoubleQuotedString:
    case QsciLexerXML::HTMLSingleQuotedString:
    case QsciLexerXML::CDATA: return colors.string;
    case QsciLexerXML::HTMLComment:
    case QsciLexerXML::SGMLComment: return colors.comment;
    default: return text;
  }
}

QColor ColorOfStyle(const QsciLexer& lexer, int style, const Tokens& colors, const QColor& text) {
  if (qobject_cast<const QsciLexerJSON*>(&lexer) != nullptr)
    return ColorOfJson(style, colors, text);
  if (qobject_cast<const QsciLexerXML*>(&lexer) != nullptr) return ColorOfXml(style, colors, text);
  return ColorOfSql(style, colors, text);
}

}  // namespace

std::unique_ptr<QsciLexer> LexerOf(const QString& language) {
  if (language == QLatin1String("sql")) return std::make_unique<QsciLexerSQL>();
  if (language == QLatin1String("json")) return std::make_unique<QsciLexerJSON>();
  if (language == QLatin1String("xml")) return std::make_unique<QsciLexerXML>();
  return nullptr;
}

void ColorCode(QsciLexer& lexer, const QFont& font, const QColor& ground, const QColor& text) {
  const Tokens& colors = TokensOn(ground);
  QFont bold = font;
  bold.setBold(true);
  lexer.setDefaultFont(font);
  lexer.setDefaultPaper(ground);
  lexer.setDefaultColor(text);
  lexer.setPaper(ground, -1);
  lexer.setFont(font, -1);
  for (int style = 0; style <= lastStyle; ++style) {
    if (lexer.description(style).isEmpty()) continue;
    lexer.setColor(ReadableOn(ground, ColorOfStyle(lexer, style, colors, text), text), style);
    lexer.setPaper(ground, style);
    lexer.setEolFill(false, style);
  }
  if (qobject_cast<const QsciLexerSQL*>(&lexer) != nullptr)
    lexer.setFont(bold, QsciLexerSQL::Keyword);
}

}  // namespace tessel
