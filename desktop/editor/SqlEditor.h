#pragma once

#include <Qsci/qsciscintilla.h>

#include <QColor>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "contract/text/TextRange.h"
#include "desktop/editor/CodeLook.h"
#include "desktop/editor/LongTextAccess.h"
#include "desktop/plain/LineBreaks.h"

namespace tessel {

/// The editor widget of a rich-text box: a Scintilla editor of bytes in UTF-8 with ordinary editing
/// keys only, coloured for the light or dark ground it stands on, in the size that the desktop has
/// for its texts.
///
/// A very long line of a text that is read-only is shown in pieces, since it cannot be laid out in
/// useful time; so is every line of a long read-only text that wraps, in pieces as wide as the
/// window. Bytes and places given and taken are those of the text itself, and so is what is copied.
///
/// Its form may give it the text property "language": "sql" colours SQL, numbers the lines, tints
/// the current one, matches brackets and keeps the indentation; so do "json" and "xml" for those,
/// and without it the text is plain.
class SqlEditor : public QsciScintilla, public TextHolder {
  Q_OBJECT
  Q_PROPERTY(QString language READ Language WRITE SetLanguage)

 public:
  explicit SqlEditor(QWidget* parent = nullptr);
  ~SqlEditor() override;

  /// Bytes of a text that the component still wraps at once.
  static constexpr std::size_t longestWrapped = 1'000'000;

  [[nodiscard]] QString Language() const { return language_; }
  void SetLanguage(const QString& language);

  /// All bytes of the text, NUL included.
  [[nodiscard]] std::string Bytes() const;
  [[nodiscard]] std::size_t Length() const;
  [[nodiscard]] bool HoldsLongText() const override { return Length() > longestWrapped; }
  /// Replaces the whole text, also while it is read-only; forgets what could be undone; the caret
  /// goes to the start.
  void SetBytes(std::string_view bytes);
  [[nodiscard]] std::size_t SelectionStart() const;
  [[nodiscard]] std::size_t SelectionEnd() const;
  [[nodiscard]] std::string SelectedBytes() const;
  /// Places beyond the end are taken as the end, those inside a character as its start.
  void Select(std::size_t start, std::size_t length);
  /// Replaces the selection, also while the text is read-only; the caret stands behind the new
  /// bytes.
  void ReplaceSelection(std::string_view bytes);

  /// Where the caret stands.
  [[nodiscard]] TextSpot CaretSpot() const;
  [[nodiscard]] bool CanUndo() const { return SendScintilla(SCI_CANUNDO) != 0; }
  [[nodiscard]] bool CanRedo() const { return SendScintilla(SCI_CANREDO) != 0; }
  // Without `edited`.
  void UndoStep();
  void RedoStep();

  /// Underlines the range with a wave until a change touches it.
  void MarkError(const TextRange& range);
  void ClearError();
  [[nodiscard]] const std::optional<TextRange>& MarkedError() const { return error_; }

  /// Points more than the desktop's size.
  [[nodiscard]] int Zoom() const { return static_cast<int>(SendScintilla(SCI_GETZOOM)); }
  void SetZoom(int points);

  /// The colours of ground and plain text; an invalid one is the palette's.
  void SetColors(const QColor& ground, const QColor& text);

  void setReadOnly(bool readOnly) override;
  void setWrapMode(WrapMode mode) override;

 signals:
  /// The user changed the text; sent after the change is complete, so the text may be changed
  /// again.
  void edited();
  /// The caret, the selection or the text is another one; sent from the event loop.
  void caretMoved();
  /// The user turned the wheel with Ctrl held, by so many steps.
  void zoomWanted(int steps);

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  QMimeData* toMimeData(const QByteArray& text, bool rectangular) const override;

 private:
  class Writing;

  /// The bytes on the screen, pieces of lines apart. Valid until the text changes.
  [[nodiscard]] std::string_view Shown() const;
  /// The text between two places of it.
  [[nodiscard]] std::string BytesBetween(std::size_t start, std::size_t end) const;
  [[nodiscard]] LineBreaks BreaksOf(std::string_view bytes, bool readOnly);
  /// Breaks the text anew; what is selected and what is on top stay.
  void BreakAnew();
  /// Breaks the text anew when its lines no longer fit the window.
  void WrapAnew();
  /// Breaks the text anew soon, since its characters have got another size.
  void MeasureAnew();
  [[nodiscard]] bool WrapsItself(std::size_t length, bool readOnly) const;
  /// Pixels that a wrapped line may take.
  [[nodiscard]] int WidthForText() const;
  [[nodiscard]] double WidthOf(std::string_view character) const;
  /// New lines end from now on as the first one of `bytes` does.
  void TakeLineEnd(std::string_view bytes);
  void Append(std::string_view bytes);
  void AppendInPieces(std::string_view bytes);
  void ReplaceInPieces(std::string_view bytes);
  void SelectShown(std::size_t start, std::size_t end);
  void KeepOrdinaryKeys();
  void HearChanges();
  void NoteModified(int position, int type, int length);
  void MoveMark(int position, int type, int length);
  void TellEdited();
  void TellCaret();
  void BeginLine();
  void TakeDesktopFont();
  void ShowColors();
  void ColorPlainText(const QColor& ground, const QColor& text);

  QString language_;
  std::unique_ptr<QsciLexer> lexer_;
  CodeLook look_{*this};
  std::optional<TextRange> error_;
  int wheel_ = 0;  ///< Turned since the last step, in eighths of a degree.
  bool tellsCaret_ = false;
  LineBreaks breaks_;
  WrapMode wrap_ = WrapNone;  ///< As asked for.
  int wrapWidth_ = 0;  ///< Pixels the lines were broken for; 0 when that was not done, -1 when
                       ///< that is to be done again.
  QTimer wrapAnew_;
  QColor ground_;
  QColor text_;
  int writing_ = 0;        ///< More than 0 while the program itself changes the text.
  int handling_ = 0;       ///< More than 0 inside event().
  bool modified_ = false;  ///< The user changed the text and it has not been told yet.
  bool ready_ = false;
};

}  // namespace tessel
