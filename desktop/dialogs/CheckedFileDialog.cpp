#include "desktop/dialogs/CheckedFileDialog.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QListView>

#include "contract/desktop/CommonDialogs.h"
#include "desktop/base/Text.h"
#include "desktop/dialogs/MessageDialog.h"

namespace tessel {

namespace {

/// The toolkit's name of the box in which a name is typed.
constexpr auto nameEdit = "fileNameEdit";
/// And of the list, whose selection that of its table is too.
constexpr auto filesList = "listView";

}  // namespace

/// The program's own dialog on every desktop, so that its rules are the same everywhere.
CheckedFileDialog::CheckedFileDialog(QWidget* owner, bool save, int flags, EventLoops& loops)
    : QFileDialog(owner), save_(save), flags_(flags), loops_(loops) {
  setOption(DontUseNativeDialog);
  setOption(DontConfirmOverwrite);
  setOption(HideNameFilterDetails);
  setAcceptMode(save ? AcceptSave : AcceptOpen);
  setFileMode(!save && (flags & fileDialogFlag::fileMustExist) != 0 ? ExistingFile : AnyFile);
  setWindowTitle(save ? tr("Save As") : tr("Open"));
}

QString CheckedFileDialog::Typed() const {
  return findChild<QLineEdit*>(QLatin1String(nameEdit))->text();
}

QString CheckedFileDialog::Chosen() const {
  const QFileInfo typed(directory(), Typed());
  if (!save_ && typed.isFile()) return typed.absoluteFilePath();
  const QStringList files = selectedFiles();
  return files.isEmpty() ? QString() : files.first();
}

/// The toolkit also selects the folder whose name is typed on the way to a file in it, and then
/// goes by that: only the name in the box counts, which names what is selected in the list too.
void CheckedFileDialog::accept() {
  if (const auto* list = findChild<QListView*>(QLatin1String(filesList)); !Typed().isEmpty())
    list->selectionModel()->clear();
  const QFileInfo file(Chosen());
  if (file.isDir()) return QFileDialog::accept();
  if (!save_ && file.suffix().isEmpty()) setDefaultSuffix(QString());
  Message message;
  message.icon = MessageIcon::Exclamation;
  message.title = FromQt(windowTitle());
  if (const QString objection = Objection(); !objection.isEmpty()) {
    message.text = FromQt(objection);
    static_cast<void>(ShowMessageBox(message, this, loops_));
    return;
  }
  if (save_ && (flags_ & fileDialogFlag::overwritePrompt) != 0 && file.exists()) {
    message.text =
        FromQt(tr("%1 already exists.\nDo you want to replace it?").arg(file.fileName()));
    message.buttons = MessageButtons::YesNo;
    if (ShowMessageBox(message, this, loops_) != MessageResult::Yes) return;
  }
  QFileDialog::accept();
}

QString CheckedFileDialog::Objection() const {
  const QFileInfo file(Chosen());
  if (!save_ && (flags_ & fileDialogFlag::fileMustExist) != 0 && !file.exists())
    return tr("%1\nThere is no such file.").arg(file.filePath());
  if ((flags_ & (fileDialogFlag::pathMustExist | fileDialogFlag::fileMustExist)) != 0 &&
      !file.absoluteDir().exists())
    return tr("%1\nThere is no such folder.").arg(file.absolutePath());
  if ((flags_ & fileDialogFlag::noReadOnlyReturn) != 0 && file.exists() && !file.isWritable())
    return tr("%1\nThe file is read-only.").arg(file.filePath());
  return {};
}

QStringList NameFilters(std::string_view filter) {
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype at = 0; at + 1 < parts.size(); at += 2) {
    QString patterns = parts[at + 1];
    if (patterns == QLatin1String("*.*")) patterns = QStringLiteral("*");
    filters.append(parts[at] + QStringLiteral(" (") +
                   patterns.replace(QLatin1Char(';'), QLatin1Char(' ')) + QLatin1Char(')'));
  }
  return filters;
}

}  // namespace tessel
