#pragma once

#include <QFileDialog>

#include "platform/desktop/window/EventLoops.h"

namespace tessel {

/// A file dialog that does not accept what the flags of FileDialog forbid, and says why.
class CheckedFileDialog final : public QFileDialog {
 public:
  CheckedFileDialog(QWidget* owner, bool save, int flags, EventLoops& loops);

  /// Sets the ending that a name typed without one gets. A file that is there under the bare name
  /// is opened as it is.
  void SetDefaultExtension(const QString& extension) { extension_ = extension; }

  /// The path that would be chosen now.
  [[nodiscard]] QString Chosen() const;

 protected:
  void accept() override;

 private:
  void CompleteName();
  [[nodiscard]] QString Objection() const;

  bool save_;
  int flags_;
  QString extension_;
  EventLoops& loops_;
};

/// The types of "Text|pattern;pattern|Text|pattern" in the form that the toolkit takes.
[[nodiscard]] QStringList NameFilters(std::string_view filter);

}  // namespace tessel
