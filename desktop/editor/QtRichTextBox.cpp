#include "desktop/editor/QtRichTextBox.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "desktop/editor/FileDrops.h"
#include "desktop/look/Colors.h"

namespace tessel {

namespace {

constexpr int caretWidth = 1;

/// The editor's names for them, in the order of their numbers.
constexpr const char* languages[] = {"", "sql", "json", "xml"};

}  // namespace

QtRichTextBox::QtRichTextBox(SqlEditor& widget, const ControlSite& site) : ControlOf(widget, site) {
  Face().applyColors = [this] { ShowColors(); };
  QObject::connect(&widget, &SqlEditor::edited, &Face(), [this] { Raise(Change); });
  QObject::connect(&widget, &SqlEditor::caretMoved, &Face(), [this] { Raise(CaretMoved); });
  QObject::connect(&widget, &SqlEditor::zoomWanted, &Face(), [this](int steps) {
    SetZoom(Zoom() + steps);
    Raise(Zoomed);
  });
  new FileDrops(
      Face(), widget, [this] { return FilesDropped.HasHandler(); },
      [this](const std::vector<std::string>& paths) { Raise(FilesDropped, paths); });
}

std::size_t QtRichTextBox::SelLength() const { return TheWidget().SelectionEnd() - SelStart(); }

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

void QtRichTextBox::SetSyntax(TextSyntax syntax) {
  if (syntax != Syntax())
    TheWidget().SetLanguage(QLatin1String(languages[static_cast<std::size_t>(syntax)]));
}

TextSyntax QtRichTextBox::Syntax() const {
  const auto* const found =
      std::ranges::find(languages, TheWidget().Language(),
                        [](const char* language) { return QString(QLatin1String(language)); });
  return found == std::end(languages) ? TextSyntax::Plain
                                      : static_cast<TextSyntax>(found - std::begin(languages));
}

void QtRichTextBox::SetZoom(int steps) {
  TheWidget().SetZoom(std::clamp(steps, smallestZoom, largestZoom));
}

void QtRichTextBox::ShowColors() {
  const QPalette palette = TheWidget().palette();
  const bool ownGround = BackColor() != color::windowBackground;
  const bool ownText = ForeColor() != color::windowText;
  TheWidget().SetColors(ownGround ? ToQColor(BackColor(), palette) : QColor(),
                        ownGround || ownText ? TextColor(ForeColor(), BackColor(), palette)
                                             : QColor());
}

}  // namespace tessel
