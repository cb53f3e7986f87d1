#include "platform/desktop/controls/SqlEditor.h"

#include <Qsci/qscicommandset.h>
#include <Qsci/qscilexersql.h>

#include <QEvent>
#include <QFontDatabase>
#include <QFontInfo>
#include <algorithm>
#include <array>

#include "platform/desktop/base/Colors.h"
#include "platform/desktop/controls/SqlColors.h"

namespace tessel {

namespace {

constexpr int marginCount = 5;
constexpr int ordinaryPoints = 10;
constexpr long leftPadding = 4;

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

/// The form's font when there is one like it, else the system's fixed one.
QFont FixedFont(QFont wanted) {
  wanted.setStyleHint(QFont::Monospace);
  wanted.setFamilies({wanted.family(), "Liberation Mono", "DejaVu Sans Mono", "monospace"});
  if (QFontInfo(wanted).fixedPitch()) return wanted;
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPointSize(ordinaryPoints);
  return fixed;
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
  setWrapMode(WrapWord);
  SendScintilla(SCI_SETWRAPINDENTMODE, SC_WRAPINDENT_FIXED);
  SendScintilla(SCI_SETLAYOUTCACHE, SC_CACHE_PAGE);
  SendScintilla(SCI_SETSCROLLWIDTHTRACKING, 1UL);
  SendScintilla(SCI_SETSCROLLWIDTH, 1UL);
  SendScintilla(SCI_SETMULTIPLESELECTION, 0UL);
  SendScintilla(SCI_SETMARGINLEFT, 0UL, leftPadding);
  setTabWidth(4);
  KeepOrdinaryKeys();
  connect(this, &QsciScintillaBase::SCN_MODIFIED, this,
          [this](int, int type) { NoteModified(type); });
  ready_ = true;
}

SqlEditor::~SqlEditor() { setLexer(nullptr); }

void SqlEditor::SetLanguage(const QString& language) {
  language_ = language;
  setLexer(nullptr);
  lexer_.reset();
  if (language == "sql") {
    lexer_ = std::make_unique<QsciLexerSQL>();
    setLexer(lexer_.get());
    SendScintilla(SCI_SETPROPERTY, "fold", "0");
    setBraceMatching(SloppyBraceMatch);
  }
  ShowColors();
}

std::string_view SqlEditor::BytesInPlace() const {
  const auto length = static_cast<std::size_t>(SendScintilla(SCI_GETLENGTH));
  const auto* bytes = static_cast<const char*>(SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
  return {bytes, length};
}

std::string SqlEditor::Bytes() const { return std::string(BytesInPlace()); }

/// New lines typed later end as the first one of the text does.
void SqlEditor::SetBytes(std::string_view bytes) {
  const Writing writing(*this);
  SendScintilla(SCI_SETUNDOCOLLECTION, 0UL);
  SendScintilla(SCI_CLEARALL);
  SendScintilla(SCI_ALLOCATE, static_cast<unsigned long>(bytes.size() + 1));
  SendScintilla(SCI_ADDTEXT, static_cast<unsigned long>(bytes.size()), bytes.data());
  SendScintilla(SCI_SETUNDOCOLLECTION, 1UL);
  SendScintilla(SCI_EMPTYUNDOBUFFER);
  SendScintilla(SCI_GOTOPOS, 0UL);
  const std::size_t lineEnd = bytes.find('\n');
  const bool windows =
      lineEnd != std::string_view::npos && lineEnd > 0 && bytes[lineEnd - 1] == '\r';
  setEolMode(windows ? EolWindows : EolUnix);
}

void SqlEditor::ReplaceSelection(std::string_view bytes) {
  const Writing writing(*this);
  SendScintilla(SCI_TARGETFROMSELECTION);
  const auto start = static_cast<std::size_t>(SendScintilla(SCI_GETTARGETSTART));
  SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(bytes.size()), bytes.data());
  SendScintilla(SCI_GOTOPOS, static_cast<unsigned long>(start + bytes.size()));
}

void SqlEditor::SetColors(const QColor& ground, const QColor& text) {
  ground_ = ground;
  text_ = text;
  ShowColors();
}

bool SqlEditor::event(QEvent* event) {
  ++handling_;
  const bool taken = QsciScintilla::event(event);
  --handling_;
  if (modified_ && handling_ == 0) TellEdited();
  return taken;
}

void SqlEditor::changeEvent(QEvent* event) {
  QsciScintilla::changeEvent(event);
  if (!ready_) return;
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) ShowColors();
}

void SqlEditor::KeepOrdinaryKeys() {
  for (QsciCommand* command : standardCommands()->commands()) {
    if (std::ranges::find(ordinaryCommands, command->command()) != ordinaryCommands.end()) continue;
    command->setKey(0);
    command->setAlternateKey(0);
  }
}

/// Scintilla must not be changed from inside its own notice, so the word goes out once the event
/// that caused it has been handled; a change from outside any event (a menu, a drop) is told from
/// the event loop.
void SqlEditor::NoteModified(int type) {
  if (writing_ > 0 || (type & (SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT)) == 0) return;
  const bool first = !modified_;
  modified_ = true;
  if (first && handling_ == 0)
    QMetaObject::invokeMethod(
        this, [this] { TellEdited(); }, Qt::QueuedConnection);
}

void SqlEditor::TellEdited() {
  if (!modified_) return;
  modified_ = false;
  emit edited();
}

void SqlEditor::ShowColors() {
  const QColor ground = ground_.isValid() ? ground_ : palette().color(QPalette::Base);
  const QColor text = text_.isValid() ? text_ : palette().color(QPalette::Text);
  if (lexer_ != nullptr) ColorSql(*lexer_, FixedFont(font()), ground, text);
  else ColorPlainText(ground, text);
  setCaretForegroundColor(text);
  setSelectionBackgroundColor(palette().color(QPalette::Highlight));
  setSelectionForegroundColor(palette().color(QPalette::HighlightedText));
  const SqlColors colors = SqlColorsOn(ground);
  setMatchedBraceBackgroundColor(colors.matchedBrace);
  setMatchedBraceForegroundColor(text);
  setUnmatchedBraceBackgroundColor(ground);
  setUnmatchedBraceForegroundColor(colors.unmatchedBrace);
}

void SqlEditor::ColorPlainText(const QColor& ground, const QColor& text) {
  setPaper(ground);
  setColor(text);
  QsciScintilla::setFont(FixedFont(font()));
}

}  // namespace tessel
