#include "desktop/controls/lists/QtLists.h"

#include <QItemSelectionModel>
#include <QLineEdit>
#include <QScrollBar>
#include <QSignalBlocker>
#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t mostMeasured = 200;

}  // namespace

QtListBox::QtListBox(QListView& widget, const ControlSite& site)
    : ControlOf(widget, site),
      model_(std::make_unique<TextListModel>()),
      delegate_(*new CutTextDelegate(widget)) {
  widget.setUniformItemSizes(true);
  widget.setEditTriggers(QAbstractItemView::NoEditTriggers);
  widget.setModel(model_.get());
  QObject::connect(widget.selectionModel(), &QItemSelectionModel::currentRowChanged, &Face(),
                   [this](const QModelIndex& current) {
                     if (quiet_ == 0 && current.isValid()) Raise(Click);
                   });
}

/// The view outlives the model.
QtListBox::~QtListBox() { TheWidget().setModel(nullptr); }

void QtListBox::AddItem(std::string_view text) { model_->Add(text); }

void QtListBox::SetLines(TextLines lines, ShownText shown) {
  ++quiet_;
  model_->SetAll(std::move(lines), std::move(shown));
  --quiet_;
}

int QtListBox::RowHeight() const { return Face().TheScale().Twips(TheWidget().sizeHintForRow(0)); }

int QtListBox::WidthFor(int rows) const {
  const QListView& list = TheWidget();
  int widest = 0;
  for (const int line : model_->LongestLines(mostMeasured))
    widest = std::max(widest, delegate_.WholeWidth(model_->index(line, 0, {})));
  const bool scrolls = model_->Count() > rows;
  const int bar = scrolls ? list.verticalScrollBar()->sizeHint().width() : 0;
  return Face().TheScale().Twips(widest + 2 * list.frameWidth() + bar);
}

void QtListBox::WriteIndex(int index) {
  ++quiet_;
  TheWidget().setCurrentIndex(model_->index(index, 0, {}));
  --quiet_;
}

QtComboBox::QtComboBox(QComboBox& widget, const ControlSite& site) : ControlOf(widget, site) {
  if (widget.isEditable()) {
    widget.setCompleter(nullptr);
    widget.lineEdit()->setMaxLength(longestTypedLine);
  }
  QObject::connect(&widget, &QComboBox::currentIndexChanged, &Face(), [this](int index) {
    if (index >= 0) Raise(Click);
  });
  if (QLineEdit* line = widget.lineEdit())
    QObject::connect(line, &QLineEdit::textEdited, &Face(),
                     [this](const QString& text) { TextEdited(text); });
}

std::string QtComboBox::List(int index) const { return FromQt(TheWidget().itemText(index)); }

/// The toolkit would select the first entry of an empty list.
void QtComboBox::AddItem(std::string_view text) {
  const QSignalBlocker silence(TheWidget());
  const int selected = ReadIndex();
  const std::string shown = ReadText();
  TheWidget().addItem(ToQt(text));
  if (ReadIndex() != selected) TheWidget().setCurrentIndex(selected);
  if (Editable() && ReadText() != shown) TheWidget().setEditText(ToQt(shown));
}

void QtComboBox::Clear() {
  const QSignalBlocker silence(TheWidget());
  TheWidget().clear();
  if (Editable()) TheWidget().clearEditText();
}

void QtComboBox::SelectAllText() {
  if (QLineEdit* line = TheWidget().lineEdit()) line->selectAll();
}

void QtComboBox::WriteIndex(int index) {
  const QSignalBlocker silence(TheWidget());
  TheWidget().setCurrentIndex(index);
}

void QtComboBox::WriteText(std::string_view text) {
  const QSignalBlocker silence(TheWidget());
  TheWidget().setCurrentIndex(-1);
  TheWidget().setEditText(ToQt(text));
}

/// A text of the user's own is no entry of the list.
void QtComboBox::TextEdited(const QString& text) {
  const QSignalBlocker silence(TheWidget());
  const int caret = TheWidget().lineEdit()->cursorPosition();
  TheWidget().setCurrentIndex(-1);
  TheWidget().setEditText(text);
  TheWidget().lineEdit()->setCursorPosition(caret);
  Raise(Change);
}

}  // namespace tessel
