#include "desktop/controls/QtTextBoxes.h"

#include <QAbstractTextDocumentLayout>
#include <QSignalBlocker>
#include <QTextBlock>
#include <algorithm>

namespace tessel {

namespace {

constexpr int narrowMargin = 3;

}  // namespace

QtLineBox::QtLineBox(QLineEdit& widget, const ControlSite& site) : ControlOf(widget, site) {
  widget.setMaxLength(longestTypedLine);
  QObject::connect(&widget, &QLineEdit::textChanged, &Face(), [this] { Raise(Change); });
}

std::size_t QtLineBox::SelStart() const {
  const QLineEdit& line = TheWidget();
  const int start = line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
  return BytesBefore(line.text(), start);
}

std::size_t QtLineBox::SelLength() const { return SelText().size(); }

void QtLineBox::Select(std::size_t start, std::size_t length) {
  const QString text = TheWidget().text();
  const qsizetype first = UnitsBefore(text, start);
  const qsizetype end =
      length > 0 ? UnitsBefore(text, start + std::min(length, ReadText().size())) : first;
  if (end > first) TheWidget().setSelection(static_cast<int>(first), static_cast<int>(end - first));
  else TheWidget().setCursorPosition(static_cast<int>(first));
}

void QtLineBox::WriteText(std::string_view text) {
  const QSignalBlocker silence(TheWidget());
  TheWidget().setText(ToQt(text));
  TheWidget().setCursorPosition(0);
}

void QtLineBox::WriteSelText(std::string_view text) {
  const QSignalBlocker silence(TheWidget());
  QLineEdit& line = TheWidget();
  const int start = line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
  const QString added = ToQt(text);
  QString whole = line.text();
  whole.replace(start, line.selectionLength(), added);
  line.setText(whole);
  line.setCursorPosition(start + static_cast<int>(added.size()));
}

QtLinesBox::QtLinesBox(QPlainTextEdit& widget, const ControlSite& site) : ControlOf(widget, site) {
  widget.document()->setDocumentMargin(narrowMargin);
  QObject::connect(&widget, &QPlainTextEdit::textChanged, &Face(), [this] { Raise(Change); });
}

std::size_t QtLinesBox::SelStart() const {
  return BytesBefore(TheWidget().toPlainText(), TheWidget().textCursor().selectionStart());
}

std::size_t QtLinesBox::SelLength() const { return SelText().size(); }

void QtLinesBox::Select(std::size_t start, std::size_t length) {
  const QString text = TheWidget().toPlainText();
  const qsizetype first = UnitsBefore(text, start);
  const qsizetype end =
      length > 0 ? UnitsBefore(text, start + std::min(length, ReadText().size())) : first;
  QTextCursor cursor = TheWidget().textCursor();
  cursor.setPosition(static_cast<int>(first));
  cursor.setPosition(static_cast<int>(end), QTextCursor::KeepAnchor);
  TheWidget().setTextCursor(cursor);
}

/// The toolkit marks line ends in a selection by U+2029.
std::string QtLinesBox::SelText() const {
  return FromQt(TheWidget().textCursor().selectedText().replace(QChar::ParagraphSeparator, '\n'));
}

int QtLinesBox::LineCount() const {
  const QTextDocument& document = *TheWidget().document();
  int lines = 0;
  for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
    static_cast<void>(document.documentLayout()->blockBoundingRect(block));  // lays it out
    lines += std::max(1, block.layout()->lineCount());
  }
  return lines;
}

void QtLinesBox::WriteText(std::string_view text) {
  const QSignalBlocker silence(TheWidget());
  TheWidget().setPlainText(ToQt(text));
}

void QtLinesBox::WriteSelText(std::string_view text) {
  const QSignalBlocker silence(TheWidget());
  QTextCursor cursor = TheWidget().textCursor();
  cursor.insertText(ToQt(text));
  TheWidget().setTextCursor(cursor);
}

}  // namespace tessel
