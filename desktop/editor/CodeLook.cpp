#include "desktop/editor/CodeLook.h"

#include <Qsci/qscilexersql.h>

#include <algorithm>
#include <string_view>

#include "desktop/look/Colors.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

using Base = QsciScintillaBase;

constexpr int numbers = 0;  ///< The margin of the line numbers.
constexpr int fewestDigits = 3;
constexpr double ownTint = 0.07;
constexpr long none = -1;
/// Bytes that are looked through for the other bracket: more takes longer than a key may.
constexpr long farthestBracket = 65'536;
constexpr std::string_view brackets = "()[]{}";

bool Opens(char bracket) { return brackets.find(bracket) % 2 == 0; }
char OtherOf(char bracket) {
  const std::size_t place = brackets.find(bracket);
  return brackets[Opens(bracket) ? place + 1 : place - 1];
}

/// A ground that somebody chose has a tint of its own.
QColor CurrentLineOn(const QColor& ground, const QColor& text) {
  const Tokens& tokens = CurrentTokens();
  return ground == tokens.base ? tokens.currentRow : Blend(ground, text, ownTint);
}

}  // namespace

CodeLook::CodeLook(QsciScintilla& editor)
    : editor_(editor), mark_(editor.indicatorDefine(QsciScintilla::SquiggleIndicator)) {
  editor_.setBraceMatching(QsciScintilla::NoBraceMatch);
}

void CodeLook::SetCode(bool isCode) {
  isCode_ = isCode;
  editor_.setMarginType(numbers, QsciScintilla::NumberMargin);
  editor_.setMarginWidth(numbers, 0);
  editor_.setCaretLineVisible(isCode);
}

void CodeLook::Show(const QColor& ground, const QColor& text, const QFont& font) {
  const Tokens& tokens = TokensOn(ground);
  editor_.setMarginsFont(font);
  editor_.setMarginsBackgroundColor(ground);
  editor_.setMarginsForegroundColor(ReadableOn(ground, tokens.muted, text));
  editor_.setCaretLineBackgroundColor(CurrentLineOn(ground, text));
  editor_.setMatchedBraceBackgroundColor(tokens.selection);
  editor_.setMatchedBraceForegroundColor(tokens.text);
  editor_.setUnmatchedBraceBackgroundColor(ground);
  editor_.setUnmatchedBraceForegroundColor(ReadableOn(ground, tokens.error, text));
  editor_.setIndicatorForegroundColor(ReadableOn(ground, tokens.error, text), mark_);
  FitNumbers();
}

void CodeLook::FitNumbers() {
  if (!isCode_) return;
  const int digits =
      std::max(fewestDigits, static_cast<int>(QString::number(editor_.lines()).size()));
  editor_.setMarginWidth(numbers, QString(digits + 1, QLatin1Char('9')));
}

// --- brackets ------------------------------------------------------------------------------------

bool CodeLook::IsCodeAt(long position) const {
  if (qobject_cast<const QsciLexerSQL*>(editor_.lexer()) == nullptr) return true;
  switch (editor_.SendScintilla(Base::SCI_GETSTYLEAT, position)) {
    case QsciLexerSQL::Comment:
    case QsciLexerSQL::CommentLine:
    case QsciLexerSQL::CommentDoc:
    case QsciLexerSQL::CommentLineHash:
    case QsciLexerSQL::DoubleQuotedString:
    case QsciLexerSQL::SingleQuotedString:
    case QsciLexerSQL::QuotedIdentifier: return false;
    default: return true;
  }
}

/// The one before the caret, else the one behind it.
long CodeLook::BracketAtCaret() const {
  const long caret = editor_.SendScintilla(Base::SCI_GETCURRENTPOS);
  for (const long position : {caret - 1, caret}) {
    if (position < 0) continue;
    const auto sign = static_cast<char>(editor_.SendScintilla(Base::SCI_GETCHARAT, position));
    if (sign != 0 && brackets.find(sign) != std::string_view::npos && IsCodeAt(position))
      return position;
  }
  return none;
}

/// The bracket that belongs to it, as far as is looked for one; itself when there is none in the
/// whole text.
long CodeLook::PartnerOf(long bracket, char sign) const {
  const long length = editor_.SendScintilla(Base::SCI_GETLENGTH);
  const bool forwards = Opens(sign);
  const long begin = forwards ? bracket : std::max(0L, bracket - farthestBracket);
  const long end = forwards ? std::min(length, bracket + farthestBracket) : bracket + 1;
  const auto* bytes = reinterpret_cast<const char*>(editor_.SendScintilla(
      Base::SCI_GETRANGEPOINTER, static_cast<unsigned long>(begin), end - begin));
  const std::string_view text(bytes, static_cast<std::size_t>(end - begin));
  const char other = OtherOf(sign);
  int depth = 0;
  for (long place = bracket; place >= begin && place < end; place += forwards ? 1 : -1) {
    const char here = text[static_cast<std::size_t>(place - begin)];
    if ((here != sign && here != other) || !IsCodeAt(place)) continue;
    depth += here == sign ? 1 : -1;
    if (depth == 0) return place;
  }
  return (forwards ? end == length : begin == 0) ? bracket : none;
}

void CodeLook::ShowBrackets() {
  const long bracket = isCode_ ? BracketAtCaret() : none;
  if (bracket == none) {
    editor_.SendScintilla(Base::SCI_BRACEHIGHLIGHT, none, none);
    return;
  }
  const auto sign = static_cast<char>(editor_.SendScintilla(Base::SCI_GETCHARAT, bracket));
  const long partner = PartnerOf(bracket, sign);
  if (partner == bracket) editor_.SendScintilla(Base::SCI_BRACEBADLIGHT, bracket);
  else editor_.SendScintilla(Base::SCI_BRACEHIGHLIGHT, partner == none ? none : bracket, partner);
}

// --- the mark of an error ------------------------------------------------------------------------

void CodeLook::Mark(std::size_t begin, std::size_t end) {
  ClearMark();
  editor_.SendScintilla(Base::SCI_SETINDICATORCURRENT, mark_);
  editor_.SendScintilla(Base::SCI_INDICATORFILLRANGE, static_cast<unsigned long>(begin),
                        static_cast<long>(end - begin));
}

void CodeLook::ClearMark() {
  editor_.SendScintilla(Base::SCI_SETINDICATORCURRENT, mark_);
  editor_.SendScintilla(Base::SCI_INDICATORCLEARRANGE, 0UL,
                        editor_.SendScintilla(Base::SCI_GETLENGTH));
}

}  // namespace tessel
