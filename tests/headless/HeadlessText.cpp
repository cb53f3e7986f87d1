#include "tests/headless/HeadlessText.h"

#include <algorithm>

#include "contract/text/Ascii.h"

namespace tessel::test {

namespace {

constexpr int characterWidth = 120;
constexpr int lineHeight = 240;

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

int CharacterCount(std::string_view text) {
  return static_cast<int>(
      std::ranges::count_if(text, [](char c) { return !Continues(c) && c != '\r'; }));
}

}  // namespace

void TextBuffer::SetText(std::string_view text) {
  text_ = text;
  start_ = 0;
  length_ = 0;
}

void TextBuffer::Select(std::size_t start, std::size_t length) {
  start_ = CharacterStart(start);
  const std::size_t room = text_.size() - std::min(start, text_.size());
  length_ = CharacterStart(start + std::min(length, room)) - start_;
}

void TextBuffer::Replace(std::string_view text) {
  text_.replace(start_, length_, text);
  start_ += text.size();
  length_ = 0;
}

void TextBuffer::SelectBackwards() {
  if (length_ == 0 && start_ > 0) Select(start_ - 1, 1);
  else if (length_ == 0) Select(0, 0);
}

void TextBuffer::SelectForwards() {
  if (length_ == 0 && start_ < text_.size())
    Select(start_, FirstCharacter(std::string_view(text_).substr(start_)).size());
}

std::size_t TextBuffer::CharacterStart(std::size_t position) const {
  position = std::min(position, text_.size());
  while (position > 0 && position < text_.size() && Continues(text_[position])) --position;
  return position;
}

std::string CharacterOfKey(int keyCode, int shift) {
  if ((shift & (shiftState::ctrl | shiftState::alt)) != 0) return {};
  const bool upper = (shift & shiftState::shift) != 0;
  const auto letter = static_cast<char>(keyCode);
  if (keyCode >= 'A' && keyCode <= 'Z') return {upper ? letter : AsciiLower(letter)};
  if ((keyCode >= '0' && keyCode <= '9' && !upper) || keyCode == key::space) return {letter};
  if (keyCode == key::fullStop && !upper) return ".";
  if (keyCode == key::equals && !upper) return "=";
  if (keyCode == key::hyphen) return upper ? "_" : "-";
  if (keyCode == key::apostrophe && !upper) return "'";
  return {};
}

std::string_view FirstCharacter(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && Continues(text[length])) ++length;
  return text.substr(0, length);
}

int HeadlessTextBox::LineCount() const {
  if (!SeveralLines()) return 1;
  const int columns = bounds_.width > 0 ? std::max(1, bounds_.width / characterWidth) : 1 << 20;
  std::string_view rest = Buffer().Text();
  int lines = 0;
  for (;;) {
    const std::size_t end = rest.find('\n');
    const int length = CharacterCount(rest.substr(0, end));
    lines += std::max(1, (length + columns - 1) / columns);
    if (end == std::string_view::npos) return lines;
    rest.remove_prefix(end + 1);
  }
}

HeadlessRichTextBox::HeadlessRichTextBox(const FormWidget& widget, FailureSink& failures,
                                         FocusKeeper& keeper, HeadlessControl* container)
    : HeadlessTextControl(widget, failures, keeper, container),
      syntax_(widget.properties.Text("language") == "sql" ? TextSyntax::Sql : TextSyntax::Plain) {}

void HeadlessRichTextBox::Select(std::size_t start, std::size_t length) {
  Buffer().Select(start, length);
  Raise(CaretMoved);
}

void HeadlessRichTextBox::WriteText(std::string_view text) {
  Buffer().SetText(text);
  error_.reset();
  undo_.clear();
  redo_.clear();
  Raise(CaretMoved);
}

void HeadlessRichTextBox::WriteSelText(std::string_view text) {
  undo_.push_back(Buffer());
  redo_.clear();
  if (error_) error_ = AfterChange(*error_, SelStart(), SelLength(), text.size());
  Buffer().Replace(text);
  Raise(CaretMoved);
}

void HeadlessRichTextBox::Exchange(std::vector<TextBuffer>& from, std::vector<TextBuffer>& to) {
  to.push_back(Buffer());
  Buffer() = from.back();
  from.pop_back();
  error_.reset();
  Raise(CaretMoved);
}

void HeadlessRichTextBox::TypeText(std::string_view text) {
  if (syntax_ == TextSyntax::Plain || text != "\n" || Locked())
    return HeadlessTextControl::TypeText(text);
  const std::string& all = Buffer().Text();
  const std::size_t line = SelStart() == 0 ? 0 : all.rfind('\n', SelStart() - 1) + 1;
  SetSelText("\n" + std::string(BlanksOfNewLine(all.substr(line), SelStart() - line)));
}

void HeadlessRichTextBox::SetZoom(int steps) {
  zoom_ = std::clamp(steps, smallestZoom, largestZoom);
}

void HeadlessRichTextBox::TurnWheel(int steps) {
  SetZoom(zoom_ + steps);
  Raise(Zoomed);
}

TextSpot HeadlessRichTextBox::CaretSpot() const {
  return SpotOf(Buffer().Text(), Buffer().Caret());
}

Rect HeadlessRichTextBox::CaretBounds() const {
  const std::string_view before = std::string_view(Buffer().Text()).substr(0, Buffer().Caret());
  const int line = static_cast<int>(std::ranges::count(before, '\n'));
  const std::string_view onLine = before.substr(before.rfind('\n') + 1);
  return {CharacterCount(onLine) * characterWidth, line * lineHeight, 15, lineHeight};
}

}  // namespace tessel::test
