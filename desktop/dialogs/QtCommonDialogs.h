#pragma once

#include <QPointer>
#include <QWidget>

#include "contract/desktop/CommonDialogs.h"
#include "desktop/services/EventLoops.h"

namespace tessel {

class QtFileDialog final : public FileDialog {
 public:
  /// The dialog stands above the window that `owner` belongs to. `lastFolder` is where all dialogs
  /// of its form and name were used last; empty before. It outlives the dialog.
  QtFileDialog(QWidget& owner, EventLoops& loops, std::string& lastFolder)
      : owner_(&owner), loops_(loops), lastFolder_(lastFolder) {}
  [[nodiscard]] bool ShowOpen() override { return Show(false); }
  [[nodiscard]] bool ShowSave() override { return Show(true); }

 private:
  [[nodiscard]] bool Show(bool save);
  [[nodiscard]] std::string Folder() const;

  QPointer<QWidget> owner_;
  EventLoops& loops_;
  std::string& lastFolder_;
};

class QtColorDialog final : public ColorDialog {
 public:
  QtColorDialog(QWidget& owner, EventLoops& loops) : owner_(&owner), loops_(loops) {}
  [[nodiscard]] bool ShowColor() override;

 private:
  QPointer<QWidget> owner_;
  EventLoops& loops_;
};

}  // namespace tessel
