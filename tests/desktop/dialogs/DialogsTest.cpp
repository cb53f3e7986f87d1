// The common dialogs.

#include <QColorDialog>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QLineEdit>
#include <QTemporaryDir>
#include <QTest>
#include <unistd.h>

#include "desktop/base/Text.h"
#include "desktop/dialogs/CheckedFileDialog.h"
#include "tests/desktop/DesktopFixture.h"

namespace tessel::test {

namespace {

class FileDialogTest : public DesktopFixture {
 protected:
  FileDialogTest() : before_(QDir::currentPath()), dialog(window->FileDialogNamed("dlgCommon")) {
    dialog.filter = "Query Files (*.sql, *.txt)|*.sql;*.txt|All Files (*.*)|*.*";
    dialog.defaultExtension = "sql";
    dialog.initialFolder = FromQt(folder.path());
    dialog.flags = fileDialogFlag::noChangeDir;
  }
  ~FileDialogTest() override { QDir::setCurrent(before_); }

  [[nodiscard]] std::string Path(const std::string& name) const {
    return FromQt(folder.path()) + "/" + name;
  }
  void Make(const std::string& name) {
    QFile file(ToQt(Path(name)));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  }
  /// Types a name into the dialog that comes up and accepts it.
  void Name(const std::string& name) {
    host.Answers().OnDialog([name](QWidget& shown) {
      auto& files = dynamic_cast<QFileDialog&>(shown);
      files.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(ToQt(name));
      QMetaObject::invokeMethod(&files, "accept");
    });
  }
  void Cancel() {
    host.Answers().OnDialog([](QWidget& shown) { dynamic_cast<QDialog&>(shown).reject(); });
  }

  QString before_;
  QTemporaryDir folder;
  std::unique_ptr<Window> frame = ShowForm("frmMDI");
  std::unique_ptr<Window> window = ShowForm("frmMain");
  FileDialog& dialog;
};

TEST_F(FileDialogTest, AFileIsOpened) {
  Make("a.sql");
  Name("a.sql");
  EXPECT_TRUE(dialog.ShowOpen());
  EXPECT_EQ(dialog.fileName, Path("a.sql"));
  EXPECT_EQ(dialog.fileTitle, "a.sql");
  EXPECT_EQ(QDir::currentPath(), before_);
}

/// Typed key by key, and with the folder on show: the toolkit selects what is named on the way.
TEST_F(FileDialogTest, AFileIsOpenedByItsWholePath) {
  dialog.flags |= fileDialogFlag::fileMustExist;
  Make("a.sql");
  host.Answers().OnDialog([path = Path("a.sql")](QWidget& shown) {
    QTest::qWait(300);
    auto* name = shown.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    QTest::keyClicks(name, ToQt(path));
    QMetaObject::invokeMethod(&shown, "accept");
    if (shown.isVisible()) dynamic_cast<QDialog&>(shown).reject();
  });
  EXPECT_TRUE(dialog.ShowOpen());
  EXPECT_EQ(dialog.fileName, Path("a.sql"));
}

TEST_F(FileDialogTest, CancellingChangesNothing) {
  dialog.fileName = Path("old.sql");
  dialog.fileTitle = "old.sql";
  Cancel();
  EXPECT_FALSE(dialog.ShowSave());
  EXPECT_EQ(dialog.fileName, Path("old.sql"));
  EXPECT_EQ(dialog.fileTitle, "old.sql");
}

TEST_F(FileDialogTest, ANameWithoutEndingGetsOne) {
  Name("new");
  EXPECT_TRUE(dialog.ShowSave());
  EXPECT_EQ(dialog.fileName, Path("new.sql"));
  Name("other.txt");
  EXPECT_TRUE(dialog.ShowSave());
  EXPECT_EQ(dialog.fileTitle, "other.txt");
}

TEST_F(FileDialogTest, AFileThatIsThereUnderTheBareNameIsOpened) {
  dialog.flags |= fileDialogFlag::fileMustExist;
  Make("script");
  Name("script");
  EXPECT_TRUE(dialog.ShowOpen());
  EXPECT_EQ(dialog.fileName, Path("script"));
  Make("orders.sql");
  Name("orders");
  EXPECT_TRUE(dialog.ShowOpen());
  EXPECT_EQ(dialog.fileName, Path("orders.sql")) << "another name gets the ending";
}

TEST_F(FileDialogTest, TheDialogReopensWhereItWas) {
  QDir(folder.path()).mkdir("sub");
  Name("sub/a.sql");
  EXPECT_TRUE(dialog.ShowSave());
  dialog.fileName.clear();
  Name("b.sql");
  EXPECT_TRUE(dialog.ShowSave());
  EXPECT_EQ(dialog.fileName, Path("sub/b.sql"));
  const auto again = ShowForm("frmMain");
  FileDialog& other = again->FileDialogNamed("dlgCommon");
  other.initialFolder = FromQt(folder.path());
  other.flags = fileDialogFlag::noChangeDir;
  Name("c.sql");
  EXPECT_TRUE(other.ShowSave());
  EXPECT_EQ(other.fileName, Path("sub/c.sql")) << "also in another window of that form";
}

TEST_F(FileDialogTest, ReplacingIsAsked) {
  Make("there.sql");
  dialog.flags |= fileDialogFlag::overwritePrompt;
  Name("there.sql");
  host.OnMessage("there.sql already exists.\nDo you want to replace it?", MessageResult::Yes);
  EXPECT_TRUE(dialog.ShowSave());
  dialog.flags = fileDialogFlag::noChangeDir;
  Name("there.sql");
  EXPECT_TRUE(dialog.ShowSave()) << "not asked without the flag";
}

TEST_F(FileDialogTest, WhatDoesNotExistIsNotOpened) {
  dialog.flags |= fileDialogFlag::fileMustExist;
  Name("none.sql");
  host.OnMessage(Path("none.sql") + "\nThere is no such file.", MessageResult::Ok);
  Cancel();
  EXPECT_FALSE(dialog.ShowOpen());
}

TEST_F(FileDialogTest, AReadOnlyFileIsNotSavedTo) {
  if (geteuid() == 0) GTEST_SKIP() << "to root every file is writable";
  Make("locked.sql");
  QFile(ToQt(Path("locked.sql"))).setPermissions(QFile::ReadOwner);
  dialog.flags |= fileDialogFlag::noReadOnlyReturn;
  Name("locked.sql");
  host.OnMessage(Path("locked.sql") + "\nThe file is read-only.", MessageResult::Ok);
  Cancel();
  EXPECT_FALSE(dialog.ShowSave());
}

TEST_F(FileDialogTest, TheCurrentFolderFollowsUnlessItMustNot) {
  dialog.flags = 0;
  Name("x");
  EXPECT_TRUE(dialog.ShowSave());
  EXPECT_EQ(QDir::currentPath(), QDir(folder.path()).canonicalPath());
}

TEST_F(FileDialogTest, FiltersAreTheToolkitsOwn) {
  EXPECT_EQ(NameFilters("SQL (*.sql)|*.sql;*.txt|All|*.*"),
            (QStringList{"SQL (*.sql) (*.sql *.txt)", "All (*)"}));
  EXPECT_EQ(NameFilters(""), QStringList());
}

TEST_F(FileDialogTest, AColourIsChosen) {
  ColorDialog& colors = window->ColorDialogNamed("dlgColor");
  EXPECT_EQ(&colors, &window->ColorDialogNamed("dlgColor"));
  colors.color = 0x0000FF;
  host.Answers().OnDialog([](QWidget& shown) {
    auto& dialog = dynamic_cast<QColorDialog&>(shown);
    EXPECT_EQ(dialog.currentColor(), QColor(Qt::red));
    dialog.setCurrentColor(QColor(0x10, 0x20, 0x30));
    dialog.accept();
  });
  EXPECT_TRUE(colors.ShowColor());
  EXPECT_EQ(colors.color, 0x302010U);
  Cancel();
  EXPECT_FALSE(colors.ShowColor());
  EXPECT_EQ(colors.color, 0x302010U);
}

}  // namespace

}  // namespace tessel::test
