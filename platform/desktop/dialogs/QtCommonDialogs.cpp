#include "platform/desktop/dialogs/QtCommonDialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QDir>
#include <QFileInfo>

#include "platform/desktop/base/Colors.h"
#include "platform/desktop/base/Text.h"
#include "platform/desktop/dialogs/CheckedFileDialog.h"

namespace tessel {

namespace {

QWidget* WindowOf(const QPointer<QWidget>& owner) {
  return owner == nullptr ? nullptr : owner->window();
}

/// The settings' folder, else the one where the proposed file lies, else the current one.
QString FolderFor(const FileDialog& settings) {
  if (!settings.initialFolder.empty()) return ToQt(settings.initialFolder);
  if (settings.fileName.empty()) return QDir::currentPath();
  return QFileInfo(ToQt(settings.fileName)).absolutePath();
}

}  // namespace

bool QtFileDialog::Show(bool save) {
  CheckedFileDialog dialog(WindowOf(owner_), save, flags, loops_);
  dialog.setDirectory(FolderFor(*this));
  dialog.setNameFilters(NameFilters(filter));
  dialog.setDefaultSuffix(ToQt(defaultExtension));
  if (!fileName.empty()) dialog.selectFile(QFileInfo(ToQt(fileName)).fileName());
  if (loops_.Run(dialog) != QDialog::Accepted) return false;
  const QFileInfo chosen(dialog.Chosen());
  fileName = FromQt(chosen.absoluteFilePath());
  fileTitle = FromQt(chosen.fileName());
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
