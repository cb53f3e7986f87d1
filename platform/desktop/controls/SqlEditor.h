#pragma once

#include <Qsci/qsciscintilla.h>

#include <QColor>
#include <memory>
#include <string>
#include <string_view>

namespace tessel {

/// The editor widget of a rich-text box: a Scintilla editor of bytes in UTF-8 with ordinary editing
/// keys only, without margins, coloured for the light or dark ground it stands on.
///
/// Its form may give it the text property "language": "sql" colours SQL and matches brackets;
/// without it the text is plain.
class SqlEditor : public QsciScintilla {
  Q_OBJECT
  Q_PROPERTY(QString language READ Language WRITE SetLanguage)

 public:
  explicit SqlEditor(QWidget* parent = nullptr);
  ~SqlEditor() override;

  [[nodiscard]] QString Language() const { return language_; }
  void SetLanguage(const QString& language);

  /// All bytes of the text, NUL included.
  [[nodiscard]] std::string Bytes() const;
  [[nodiscard]] std::string_view BytesInPlace() const;  ///< Valid until the text changes.
  /// Replaces the whole text, also while it is read-only; forgets what could be undone; the caret
  /// goes to the start.
  void SetBytes(std::string_view bytes);
  /// Replaces the selection, also while the text is read-only; the caret stands behind the new
  /// bytes.
  void ReplaceSelection(std::string_view bytes);

  /// The colours of ground and plain text; an invalid one is the palette's.
  void SetColors(const QColor& ground, const QColor& text);

 signals:
  /// The user changed the text; sent after the change is complete, so the text may be changed
  /// again.
  void edited();

 protected:
  bool event(QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  class Writing;

  void KeepOrdinaryKeys();
  void NoteModified(int type);
  void TellEdited();
  void ShowColors();
  void ColorPlainText(const QColor& ground, const QColor& text);

  QString language_;
  std::unique_ptr<QsciLexer> lexer_;
  QColor ground_;
  QColor text_;
  int writing_ = 0;        ///< More than 0 while the program itself changes the text.
  int handling_ = 0;       ///< More than 0 inside event().
  bool modified_ = false;  ///< The user changed the text and it has not been told yet.
  bool ready_ = false;
};

}  // namespace tessel
