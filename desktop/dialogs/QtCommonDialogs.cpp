#include "desktop/dialogs/QtCommonDialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileInfo>

#include "desktop/base/Text.h"
#include "desktop/dialogs/CheckedFileDialog.h"
#include "desktop/look/Colors.h"

namespace tessel {

namespace {

QWidget* WindowOf(const QPointer<QWidget>& owner) {
  return owner == nullptr ? nullptr : owner->window();
}

}  // namespace

std::string QtFileDialog::Folder() const {
  if (!initialFolder.empty()) return lastFolder_.empty() ? initialFolder : lastFolder_;
  if (fileName.empty()) return FromQt(QDir::currentPath());
  return FromQt(QFileInfo(ToQt(fileName)).absolutePath());
}

bool QtFileDialog::Show(bool save) {
  CheckedFileDialog dialog(WindowOf(owner_), save, flags, loops_);
  dialog.setDirectory(ToQt(Folder()));
  dialog.setNameFilters(NameFilters(filter));
  dialog.setDefaultSuffix(ToQt(defaultExtension));
  if (!fileName.empty()) dialog.selectFile(QFileInfo(ToQt(fileName)).fileName());
  if (loops_.Run(dialog) != QDialog::Accepted) return false;
  const QFileInfo chosen(dialog.Chosen());
  fileName = FromQt(chosen.absoluteFilePath());
  fileTitle = FromQt(chosen.fileName());
  lastFolder_ = FromQt(chosen.absolutePath());
  if ((flags & fileDialogFlag::noChangeDir) == 0) QDir::setCurrent(chosen.absolutePath());
  return true;
}

bool QtColorDialog::ShowColor() {
  QColorDialog dialog(WindowOf(owner_));
  dialog.setOption(QColorDialog::DontUseNativeDialog);
  dialog.setCurrentColor(ToQColor(color, QApplication::palette()));
  if (loops_.Run(dialog) != QDialog::Accepted) return false;
  color = FromQColor(dialog.selectedColor());
  return true;
}

}  // namespace tessel
