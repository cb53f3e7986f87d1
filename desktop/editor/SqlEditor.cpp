// The editor widget behind the query window and the text windows. The sections follow its jobs: the
// text as bytes, long texts that this class wraps itself because the component is too slow for
// them, the selection, and its look and keys.

#include "desktop/editor/SqlEditor.h"

#include <Qsci/qscicommandset.h>

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QWheelEvent>
#include <algorithm>
#include <array>
#include <utility>

#include "contract/text/Utf8.h"
#include "desktop/base/Text.h"
#include "desktop/editor/SqlColors.h"
#include "desktop/look/Colors.h"
#include "desktop/plain/LineWrapping.h"

namespace tessel {

namespace {

constexpr int marginCount = 5;
constexpr long leftPadding = 4;
constexpr int columnsOfTab = 4;
constexpr int columnsOfCode = 4;  ///< A control character is shown by its name.
constexpr std::size_t appendedAtOnce = 1U << 20U;
constexpr int resizingPause = 100;  ///< Milliseconds.

/// What every editor does; all other commands lose their keys, so that the program's own keys are
/// not taken.
constexpr std::array ordinaryCommands{
    QsciCommand::LineDown,
    QsciCommand::LineDownExtend,
    QsciCommand::LineUp,
    QsciCommand::LineUpExtend,
    QsciCommand::LineScrollDown,
    QsciCommand::LineScrollUp,
    QsciCommand::CharLeft,
    QsciCommand::CharLeftExtend,
    QsciCommand::CharRight,
    QsciCommand::CharRightExtend,
    QsciCommand::WordLeft,
    QsciCommand::WordLeftExtend,
    QsciCommand::WordRight,
    QsciCommand::WordRightExtend,
    QsciCommand::VCHome,
    QsciCommand::VCHomeExtend,
    QsciCommand::LineEnd,
    QsciCommand::LineEndExtend,
    QsciCommand::DocumentStart,
    QsciCommand::DocumentStartExtend,
    QsciCommand::DocumentEnd,
    QsciCommand::DocumentEndExtend,
    QsciCommand::PageUp,
    QsciCommand::PageUpExtend,
    QsciCommand::PageDown,
    QsciCommand::PageDownExtend,
    QsciCommand::Delete,
    QsciCommand::DeleteBack,
    QsciCommand::DeleteWordLeft,
    QsciCommand::DeleteWordRight,
    QsciCommand::Undo,
    QsciCommand::Redo,
    QsciCommand::SelectionCut,
    QsciCommand::SelectionCopy,
    QsciCommand::Paste,
    QsciCommand::SelectAll,
    QsciCommand::Tab,
    QsciCommand::Backtab,
    QsciCommand::Newline,
    QsciCommand::EditToggleOvertype,
};

/// The form's font when there is one like it, else the system's fixed one; in the size of the
/// desktop's texts.
QFont FixedFont(QFont wanted) {
  const QFont desktop = QApplication::font();
  if (desktop.pointSizeF() > 0) wanted.setPointSizeF(desktop.pointSizeF());
  else wanted.setPixelSize(desktop.pixelSize());
  wanted.setStyleHint(QFont::Monospace);
  wanted.setFamilies({wanted.family(), "Liberation Mono", "DejaVu Sans Mono", "monospace"});
  if (QFontInfo(wanted).fixedPitch()) return wanted;
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  if (wanted.pointSizeF() > 0) fixed.setPointSizeF(wanted.pointSizeF());
  else fixed.setPixelSize(wanted.pixelSize());
  return fixed;
}

/// A control character, or a byte that is no UTF-8.
bool ShownByName(std::string_view character) {
  const auto lead = static_cast<unsigned char>(character.front());
  if (character.size() == 1) return lead < 0x20 || lead >= 0x7F;
  return lead == 0xC2 && static_cast<unsigned char>(character[1]) < 0xA0;
}

}  // namespace

/// While it lives the program itself changes the text, read-only or not.
class SqlEditor::Writing {
 public:
  explicit Writing(SqlEditor& editor) : editor_(editor), wasReadOnly_(editor.isReadOnly()) {
    ++editor_.writing_;
    editor_.SendScintilla(SCI_SETREADONLY, 0UL);
  }
  ~Writing() {
    editor_.SendScintilla(SCI_SETREADONLY, wasReadOnly_ ? 1UL : 0UL);
    --editor_.writing_;
  }
  [[nodiscard]] bool WasReadOnly() const { return wasReadOnly_; }
  Writing(const Writing&) = delete;
  Writing& operator=(const Writing&) = delete;

 private:
  SqlEditor& editor_;
  bool wasReadOnly_;
};

SqlEditor::SqlEditor(QWidget* parent) : QsciScintilla(parent) {
  setUtf8(true);
  setEolMode(EolUnix);
  for (int margin = 0; margin < marginCount; ++margin) setMarginWidth(margin, 0);
  setAnnotationDisplay(AnnotationHidden);  // Else every line of a new text is laid out to wrap it.
  setWrapMode(WrapWord);
  SendScintilla(SCI_SETWRAPINDENTMODE, SC_WRAPINDENT_FIXED);
  SendScintilla(SCI_SETLAYOUTCACHE, SC_CACHE_PAGE);
  SendScintilla(SCI_SETSCROLLWIDTHTRACKING, 1UL);
  SendScintilla(SCI_SETSCROLLWIDTH, 1UL);
  SendScintilla(SCI_SETMULTIPLESELECTION, 0UL);
  SendScintilla(SCI_SETMARGINLEFT, 0UL, leftPadding);
  setTabWidth(columnsOfTab);
  KeepOrdinaryKeys();
  InstallLongTextAccess();
  wrapAnew_.setSingleShot(true);
  wrapAnew_.setInterval(resizingPause);
  connect(&wrapAnew_, &QTimer::timeout, this, &SqlEditor::WrapAnew);
  connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
          [this](int position, int type, const char*, int length) {
            NoteModified(position, type, length);
          });
  connect(this, &QsciScintillaBase::SCN_ZOOM, this, &SqlEditor::MeasureAnew);
  connect(this, &QsciScintillaBase::SCN_UPDATEUI, this, &SqlEditor::TellCaret);
  HearChanges();
  ready_ = true;
}

SqlEditor::~SqlEditor() { setLexer(nullptr); }

void SqlEditor::SetLanguage(const QString& language) {
  language_ = language;
  setLexer(nullptr);
  lexer_ = LexerOf(language);
  if (lexer_ != nullptr) {
    setLexer(lexer_.get());
    SendScintilla(SCI_SETPROPERTY, "fold", "0");
  }
  look_.SetCode(lexer_ != nullptr);
  ShowColors();
}

// --- its text ------------------------------------------------------------------------------------

std::string_view SqlEditor::Shown() const {
  const auto length = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  const auto* bytes = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
  return {bytes, length};
}

/// Without a look at the bytes, which the component would have to bring together for it.
std::size_t SqlEditor::Length() const {
  return static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH)) - breaks_.Count();
}

std::string SqlEditor::BytesBetween(std::size_t start, std::size_t end) const {
  const std::string_view shown = Shown();
  std::string bytes;
  bytes.reserve(end - start);
  auto next = std::ranges::upper_bound(breaks_.Places(), start);
  while (start < end) {
    const std::size_t stop = next == breaks_.Places().end() ? end : std::min(*next++, end);
    bytes += shown.substr(breaks_.Shown(start), stop - start);
    start = stop;
  }
  return bytes;
}

std::string SqlEditor::Bytes() const { return BytesBetween(0, Length()); }

/// The caret stays where it is.
void SqlEditor::Append(std::string_view bytes) {
  SendScintilla(SCI_APPENDTEXT, static_cast<unsigned long>(bytes.size()), bytes.data());
}

void SqlEditor::AppendInPieces(std::string_view bytes) {
  std::string block;
  std::size_t start = 0;
  for (const std::size_t place : breaks_.Places()) {
    block.append(bytes.substr(start, place - start)) += '\n';
    start = place;
    if (block.size() < appendedAtOnce) continue;
    Append(block);
    block.clear();
  }
  Append(block);
  Append(bytes.substr(start));
}

/// New lines typed later end as the first one of the text does. Nobody is told of the change: the
/// editor would copy the text and count its characters for that. And moving the caret would lay out
/// the whole text when lines wrap.
void SqlEditor::SetBytes(std::string_view bytes) {
  const Writing writing(*this);
  breaks_ = BreaksOf(bytes, writing.WasReadOnly());
  SendScintilla(SCI_SETMODEVENTMASK, 0UL);
  SendScintilla(SCI_SETUNDOCOLLECTION, 0UL);
  SendScintilla(SCI_CLEARALL);
  const bool wrapsItself = WrapsItself(bytes.size(), writing.WasReadOnly());
  QsciScintilla::setWrapMode(wrapsItself ? WrapNone : wrap_);
  SendScintilla(SCI_ALLOCATE, static_cast<unsigned long>(bytes.size() + breaks_.Count() + 1));
  AppendInPieces(bytes);
  SendScintilla(SCI_SETUNDOCOLLECTION, 1UL);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  SendScintilla(SCI_SETXOFFSET, 0UL);
  SendScintilla(SCI_SETSCROLLWIDTH, 1UL);
  HearChanges();
  TakeLineEnd(bytes);
  ClearError();
  TellCaret();
  RenewTextAccess(*this, *this);
}

/// A change that it tells of afterwards the component also tells to assistive tools, and counts all
/// characters before it for that, whether anybody listens or not: half a second in 50 MB. Of a long
/// text it tells only before each change; any other bit, those of who made a change too, would have
/// it tell afterwards.
void SqlEditor::HearChanges() {
  constexpr unsigned long before = SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE;
  constexpr unsigned long everything = SC_MODEVENTMASKALL;
  SendScintilla(SCI_SETMODEVENTMASK, HoldsLongText() ? before : everything);
}

void SqlEditor::TakeLineEnd(std::string_view bytes) {
  const std::size_t lineEnd = bytes.find('\n');
  const bool windows =
      lineEnd != std::string_view::npos && lineEnd > 0 && bytes[lineEnd - 1] == '\r';
  setEolMode(windows ? EolWindows : EolUnix);
}

/// Pieces of lines are put together while the text may be edited.
void SqlEditor::setReadOnly(bool readOnly) {
  if (readOnly == isReadOnly()) return;
  QsciScintilla::setReadOnly(readOnly);
  if (!breaks_.Empty() || WrapsItself(Length(), readOnly)) BreakAnew();
}

// --- long texts that wrap ------------------------------------------------------------------------

/// The component lays out all lines before it moves the caret to one that it has not wrapped yet,
/// which takes a minute for 100 MB. A text that is only read can be broken without it.
bool SqlEditor::WrapsItself(std::size_t length, bool readOnly) const {
  return readOnly && wrap_ != WrapNone && length > longestWrapped;
}

/// The width is not known before the window is on the screen. The last column is kept for a blank
/// that ends a line.
LineBreaks SqlEditor::BreaksOf(std::string_view bytes, bool readOnly) {
  wrapWidth_ = 0;
  if (!readOnly) return {};
  if (!isVisible() || !WrapsItself(bytes.size(), readOnly)) return LineBreaks(bytes);
  wrapWidth_ = WidthForText();
  const auto widthOf = [this](std::string_view character) { return WidthOf(character); };
  return LineBreaks(WrappedPlaces(bytes, wrapWidth_ - WidthOf(" "), widthOf));
}

void SqlEditor::BreakAnew() {
  const auto inText = [this](unsigned int message) {
    return breaks_.InText(static_cast<std::size_t>(SendScintilla(message)));
  };
  const std::size_t anchor = inText(SCI_GETANCHOR);
  const std::size_t caret = inText(SCI_GETCURRENTPOS);
  const long topLine =
      SendScintilla(SCI_DOCLINEFROMVISIBLE, SendScintilla(SCI_GETFIRSTVISIBLELINE));
  const std::size_t top =
      breaks_.InText(static_cast<std::size_t>(SendScintilla(SCI_POSITIONFROMLINE, topLine)));
  SetBytes(Bytes());
  SendScintilla(SCI_SETANCHOR, static_cast<unsigned long>(breaks_.Shown(anchor)));
  SendScintilla(SCI_SETCURRENTPOS, static_cast<unsigned long>(breaks_.Shown(caret)));
  const long line = SendScintilla(SCI_LINEFROMPOSITION, static_cast<long>(breaks_.Shown(top)));
  SendScintilla(SCI_SETFIRSTVISIBLELINE, SendScintilla(SCI_VISIBLEFROMDOCLINE, line));
}

void SqlEditor::WrapAnew() {
  if (WrapsItself(Length(), isReadOnly()) && wrapWidth_ != WidthForText()) BreakAnew();
}

void SqlEditor::setWrapMode(WrapMode mode) {
  if (mode == wrap_) return;
  wrap_ = mode;
  if (isReadOnly() && Length() > longestWrapped) BreakAnew();
  else QsciScintilla::setWrapMode(mode);
}

void SqlEditor::MeasureAnew() {
  look_.FitNumbers();
  if (wrapWidth_ == 0) return;
  wrapWidth_ = -1;
  wrapAnew_.start();
}

void SqlEditor::resizeEvent(QResizeEvent* event) {
  QsciScintilla::resizeEvent(event);
  wrapAnew_.start();
}

void SqlEditor::showEvent(QShowEvent* event) {
  QsciScintilla::showEvent(event);
  WrapAnew();
}

/// The scroll bar stands there as soon as the text does. A pixel is kept for the caret.
int SqlEditor::WidthForText() const {
  const long padding = leftPadding + SendScintilla(SCI_GETMARGINRIGHT) + 1;
  return contentsRect().width() - verticalScrollBar()->sizeHint().width() -
         static_cast<int>(padding);
}

/// Taken from many, as the component counts whole pixels.
double SqlEditor::WidthOf(std::string_view character) const {
  constexpr int many = 32;
  if (character == "\t") return columnsOfTab * WidthOf(" ");
  if (ShownByName(character)) return columnsOfCode * WidthOf(" ");
  std::string row;
  for (int i = 0; i < many; ++i) row += character;
  return static_cast<double>(SendScintilla(SCI_TEXTWIDTH, STYLE_DEFAULT, row.c_str())) / many;
}

// --- its selection -------------------------------------------------------------------------------

std::size_t SqlEditor::SelectionStart() const {
  return breaks_.InText(static_cast<std::size_t>(SendScintilla(SCI_GETSELECTIONSTART)));
}

std::size_t SqlEditor::SelectionEnd() const {
  return breaks_.InText(static_cast<std::size_t>(SendScintilla(SCI_GETSELECTIONEND)));
}

std::string SqlEditor::SelectedBytes() const {
  return BytesBetween(SelectionStart(), SelectionEnd());
}

void SqlEditor::Select(std::size_t start, std::size_t length) {
  const std::size_t whole = Length();
  const std::size_t first = std::min(start, whole);
  SelectShown(breaks_.Shown(first), breaks_.Shown(first + std::min(length, whole - first)));
}

void SqlEditor::SelectShown(std::size_t start, std::size_t end) {
  const std::string_view shown = Shown();
  SendScintilla(SCI_SETSEL, static_cast<long>(CharacterStart(shown, start)),
                static_cast<long>(CharacterStart(shown, end)));
}

/// The selection, or the line of the caret when there is none.
QMimeData* SqlEditor::toMimeData(const QByteArray& text, bool rectangular) const {
  const std::size_t start = SelectionStart();
  const std::size_t end = SelectionEnd();
  if (breaks_.Empty() || rectangular || start == end)
    return QsciScintilla::toMimeData(text, rectangular);
  return QsciScintilla::toMimeData(QByteArray::fromStdString(BytesBetween(start, end)), false);
}

void SqlEditor::ReplaceSelection(std::string_view bytes) {
  if (!breaks_.Empty()) return ReplaceInPieces(bytes);
  const Writing writing(*this);
  const bool all = SelectionStart() == 0 && SelectionEnd() == Length();
  if (all || lines() == 1) TakeLineEnd(bytes);
  SendScintilla(SCI_TARGETFROMSELECTION);
  const auto start = static_cast<std::size_t>(SendScintilla(SCI_GETTARGETSTART));
  SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(bytes.size()), bytes.data());
  SendScintilla(SCI_GOTOPOS, static_cast<unsigned long>(start + bytes.size()));
}

void SqlEditor::ReplaceInPieces(std::string_view bytes) {
  const std::size_t start = SelectionStart();
  const std::string behind = BytesBetween(SelectionEnd(), Length());
  SetBytes(BytesBetween(0, start).append(bytes).append(behind));
  Select(start + bytes.size(), 0);
}

// --- what a person who types expects -------------------------------------------------------------

TextSpot SqlEditor::CaretSpot() const {
  const long caret = SendScintilla(SCI_GETCURRENTPOS);
  if (!breaks_.Empty()) return SpotOf(Bytes(), breaks_.InText(static_cast<std::size_t>(caret)));
  const long line = SendScintilla(SCI_LINEFROMPOSITION, caret);
  const long start = SendScintilla(SCI_POSITIONFROMLINE, line);
  const long before = SendScintilla(SCI_COUNTCHARACTERS, static_cast<unsigned long>(start), caret);
  return {line + 1, before + 1};
}

void SqlEditor::UndoStep() {
  const Writing writing(*this);
  undo();
}

void SqlEditor::RedoStep() {
  const Writing writing(*this);
  redo();
}

void SqlEditor::MarkError(const TextRange& range) {
  error_ = range;
  look_.Mark(breaks_.Shown(range.begin), breaks_.Shown(range.end));
}

void SqlEditor::ClearError() {
  error_.reset();
  look_.ClearMark();
}

void SqlEditor::SetZoom(int points) {
  if (points != Zoom()) SendScintilla(SCI_SETZOOM, points);
}

void SqlEditor::keyPressEvent(QKeyEvent* event) {
  const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
  if (isEnter && plain && lexer_ != nullptr && !isReadOnly()) BeginLine();
  else QsciScintilla::keyPressEvent(event);
}

/// With the blanks of the line before: both are one change.
void SqlEditor::BeginLine() {
  const long start = SendScintilla(SCI_GETSELECTIONSTART);
  const long line = SendScintilla(SCI_POSITIONFROMLINE, SendScintilla(SCI_LINEFROMPOSITION, start));
  const auto* bytes = reinterpret_cast<const char*>(
      SendScintilla(SCI_GETRANGEPOINTER, static_cast<unsigned long>(line), start - line));
  const auto before = static_cast<std::size_t>(start - line);
  std::string text = eolMode() == EolWindows ? "\r\n" : "\n";
  text += BlanksOfNewLine({bytes, before}, before);
  SendScintilla(SCI_REPLACESEL, text.c_str());
  SendScintilla(SCI_SCROLLCARET);
}

void SqlEditor::wheelEvent(QWheelEvent* event) {
  if (!event->modifiers().testFlag(Qt::ControlModifier)) return QsciScintilla::wheelEvent(event);
  wheel_ += event->angleDelta().y();
  const int steps = wheel_ / QWheelEvent::DefaultDeltasPerStep;
  wheel_ -= steps * QWheelEvent::DefaultDeltasPerStep;
  if (steps != 0) emit zoomWanted(steps);
  event->accept();
}

// --- its look and its keys -----------------------------------------------------------------------

void SqlEditor::SetColors(const QColor& ground, const QColor& text) {
  ground_ = ground;
  text_ = text;
  ShowColors();
}

bool SqlEditor::event(QEvent* event) {
  ++handling_;
  const bool taken = QsciScintilla::event(event);
  if (event->type() == QEvent::ApplicationFontChange) TakeDesktopFont();
  --handling_;
  if (modified_ && handling_ == 0) TellEdited();
  return taken;
}

void SqlEditor::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (!ready_) return;
  const bool fontChanged = event->type() == QEvent::FontChange;
  if (fontChanged) TakeDesktopFont();
  else if (event->type() == QEvent::PaletteChange) ShowColors();
}

void SqlEditor::TakeDesktopFont() {
  ShowColors();
  MeasureAnew();
}

void SqlEditor::KeepOrdinaryKeys() {
  for (QsciCommand* command : standardCommands()->commands()) {
    if (std::ranges::find(ordinaryCommands, command->command()) != ordinaryCommands.end()) continue;
    command->setKey(0);
    command->setAlternateKey(0);
  }
}

/// The notice comes before the change. Scintilla must not be changed from inside it, so the word
/// goes out once the event that caused it has been handled; a change from outside any event (a
/// menu, a drop) is told from the event loop.
void SqlEditor::NoteModified(int position, int type, int length) {
  if ((type & (SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE)) == 0) return;
  MoveMark(position, type, length);
  if (writing_ > 0) return;
  const bool first = !modified_;
  modified_ = true;
  if (first && handling_ == 0)
    QMetaObject::invokeMethod(
        this, [this] { TellEdited(); }, Qt::QueuedConnection);
}

/// The mark is taken away from the event loop, as nothing may be changed from inside a notice.
void SqlEditor::MoveMark(int position, int type, int length) {
  if (!error_) return;
  const auto bytes = static_cast<std::size_t>(length);
  const bool inserts = (type & SC_MOD_BEFOREINSERT) != 0;
  error_ = AfterChange(*error_, static_cast<std::size_t>(position), inserts ? 0 : bytes,
                       inserts ? bytes : 0);
  if (error_) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!error_) look_.ClearMark();
      },
      Qt::QueuedConnection);
}

void SqlEditor::TellCaret() {
  if (std::exchange(tellsCaret_, true)) return;
  QMetaObject::invokeMethod(
      this,
      [this] {
        tellsCaret_ = false;
        look_.FitNumbers();
        look_.ShowBrackets();
        emit caretMoved();
      },
      Qt::QueuedConnection);
}

void SqlEditor::TellEdited() {
  if (!modified_) return;
  modified_ = false;
  HearChanges();
  emit edited();
}

void SqlEditor::ShowColors() {
  const QColor ground = ground_.isValid() ? ground_ : palette().color(QPalette::Base);
  const QColor text = text_.isValid() ? text_ : palette().color(QPalette::Text);
  if (lexer_ != nullptr) ColorCode(*lexer_, FixedFont(font()), ground, text);
  else ColorPlainText(ground, text);
  setCaretForegroundColor(text);
  setSelectionBackgroundColor(palette().color(QPalette::Highlight));
  setSelectionForegroundColor(palette().color(QPalette::HighlightedText));
  look_.Show(ground, text, FixedFont(font()));
}

void SqlEditor::ColorPlainText(const QColor& ground, const QColor& text) {
  setPaper(ground);
  setColor(text);
  QsciScintilla::setFont(FixedFont(font()));
}

}  // namespace tessel
