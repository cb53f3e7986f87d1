#pragma once

#include <QLineEdit>
#include <QPlainTextEdit>

#include "contract/desktop/controls/TextBox.h"
#include "desktop/controls/ControlOf.h"

namespace tessel {

/// A text box of one line.
class QtLineBox final : public ControlOf<TextBox, QLineEdit> {
 public:
  QtLineBox(QLineEdit& widget, const ControlSite& site);
  [[nodiscard]] std::size_t SelStart() const override;
  [[nodiscard]] std::size_t SelLength() const override;
  void Select(std::size_t start, std::size_t length) override;
  [[nodiscard]] std::string SelText() const override { return FromQt(TheWidget().selectedText()); }
  [[nodiscard]] bool Locked() const override { return TheWidget().isReadOnly(); }
  void SetLocked(bool locked) override { TheWidget().setReadOnly(locked); }
  [[nodiscard]] int LineCount() const override { return 1; }

 protected:
  [[nodiscard]] std::string ReadText() const override { return FromQt(TheWidget().text()); }
  void WriteText(std::string_view text) override;
  void WriteSelText(std::string_view text) override;
};

/// A text box of several lines. Line ends of either kind are read back as line feeds.
class QtLinesBox final : public ControlOf<TextBox, QPlainTextEdit> {
 public:
  QtLinesBox(QPlainTextEdit& widget, const ControlSite& site);
  [[nodiscard]] std::size_t SelStart() const override;
  [[nodiscard]] std::size_t SelLength() const override;
  void Select(std::size_t start, std::size_t length) override;
  [[nodiscard]] std::string SelText() const override;
  [[nodiscard]] bool Locked() const override { return TheWidget().isReadOnly(); }
  void SetLocked(bool locked) override { TheWidget().setReadOnly(locked); }
  [[nodiscard]] int LineCount() const override;

 protected:
  [[nodiscard]] std::string ReadText() const override { return FromQt(TheWidget().toPlainText()); }
  void WriteText(std::string_view text) override;
  void WriteSelText(std::string_view text) override;
};

}  // namespace tessel
