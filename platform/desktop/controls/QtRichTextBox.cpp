#include "platform/desktop/controls/QtRichTextBox.h"

#include <algorithm>

#include "platform/desktop/base/Colors.h"

namespace tessel {

namespace {

constexpr int caretWidth = 1;

bool Continues(char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; }

/// `position` taken back to the start of the character it falls into, at most to the end of the
/// text.
std::size_t CharacterStart(std::string_view text, std::size_t position) {
  position = std::min(position, text.size());
  while (position > 0 && position < text.size() && Continues(text[position])) --position;
  return position;
}

}  // namespace

QtRichTextBox::QtRichTextBox(SqlEditor& widget, const ControlSite& site) : ControlOf(widget, site) {
  Face().applyColors = [this] { ShowColors(); };
  QObject::connect(&widget, &SqlEditor::edited, &Face(), [this] { Raise(Change); });
}

std::size_t QtRichTextBox::SelStart() const {
  return Ask(QsciScintillaBase::SCI_GETSELECTIONSTART);
}

std::size_t QtRichTextBox::SelLength() const {
  return Ask(QsciScintillaBase::SCI_GETSELECTIONEND) - SelStart();
}

void QtRichTextBox::Select(std::size_t start, std::size_t length) {
  const std::string_view text = TheWidget().BytesInPlace();
  const std::size_t first = CharacterStart(text, start);
  const std::size_t end = CharacterStart(text, start + std::min(length, text.size()));
  TheWidget().SendScintilla(QsciScintillaBase::SCI_SETSEL, static_cast<long>(first),
                            static_cast<long>(end));
}

std::string QtRichTextBox::SelText() const {
  return std::string(TheWidget().BytesInPlace().substr(SelStart(), SelLength()));
}

void QtRichTextBox::SetRightMargin(int twips) {
  rightMargin_ = twips;
  TheWidget().setWrapMode(twips == 0 ? QsciScintilla::WrapWord : QsciScintilla::WrapNone);
}

Rect QtRichTextBox::CaretBounds() const {
  const SqlEditor& editor = TheWidget();
  const long caret = editor.SendScintilla(QsciScintillaBase::SCI_GETCURRENTPOS);
  const long line = editor.SendScintilla(QsciScintillaBase::SCI_LINEFROMPOSITION, caret);
  const auto at = [&](unsigned int message) {
    return static_cast<int>(editor.SendScintilla(message, 0UL, caret));
  };
  const QPoint place(at(QsciScintillaBase::SCI_POINTXFROMPOSITION),
                     at(QsciScintillaBase::SCI_POINTYFROMPOSITION));
  const int height =
      static_cast<int>(editor.SendScintilla(QsciScintillaBase::SCI_TEXTHEIGHT, line));
  const QPoint inside = editor.viewport()->mapTo(&editor, place);
  return Face().TheScale().Twips(QRect(inside, QSize(caretWidth, height)));
}

std::size_t QtRichTextBox::Ask(unsigned int message) const {
  return static_cast<std::size_t>(TheWidget().SendScintilla(message));
}

void QtRichTextBox::ShowColors() {
  const QPalette palette = TheWidget().palette();
  const auto plain = [&](Color color, Color ordinary) {
    return color == ordinary ? QColor() : ToQColor(color, palette);
  };
  TheWidget().SetColors(plain(BackColor(), color::windowBackground),
                        plain(ForeColor(), color::windowText));
}

}  // namespace tessel
