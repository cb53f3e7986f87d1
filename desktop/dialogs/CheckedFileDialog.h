#pragma once

#include <QFileDialog>

#include "desktop/services/EventLoops.h"

namespace tessel {

/// A file dialog that does not accept what the flags of FileDialog forbid, and says why.
class CheckedFileDialog final : public QFileDialog {
 public:
  CheckedFileDialog(QWidget* owner, bool save, int flags, EventLoops& loops);

  /// The path that would be chosen now. A file to open that is there under the name as typed comes
  /// before one with the default ending.
  [[nodiscard]] QString Chosen() const;

 protected:
  void accept() override;

 private:
  [[nodiscard]] QString Typed() const;
  [[nodiscard]] QString Objection() const;

  bool save_;
  int flags_;
  EventLoops& loops_;
};

/// The types of "Text|pattern;pattern|Text|pattern" in the form that the toolkit takes.
[[nodiscard]] QStringList NameFilters(std::string_view filter);

}  // namespace tessel
