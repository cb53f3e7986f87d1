// The main job on real windows and real databases: connect, select, run, see the rows; several
// connections; failure, cancel, reconnect, save, close.

#include <QEvent>
#include <QFileDialog>
#include <QLineEdit>

#include <gtest/gtest.h>

#include "tests/data/servers/TestServers.h"
#include "tests/desktop/program/ProgramFixture.h"

namespace tessel::test {
namespace {

class MainJobTest : public ProgramFixture {};

/// Counts how often a progress window comes up.
class ProgressCounter final : public QObject {
 public:
  ProgressCounter() { qApp->installEventFilter(this); }
  [[nodiscard]] int Count() const { return count_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Show && watched->objectName() == QLatin1String("dlgAsync"))
      ++count_;
    return false;
  }

 private:
  int count_ = 0;
};

TEST_F(MainJobTest, ConnectingSelectingAndF5ShowTheRows) {
  Start();
  EXPECT_EQ(Records(0).Caption(), "Shop");
  EXPECT_EQ(Status(0), "Connected.");
  Run("SELECT Name, City FROM customers ORDER BY CustomerID");
  EXPECT_EQ(Status(0), "400 record(s).");
  EXPECT_TRUE(Grid(0).Visible());
  EXPECT_EQ(Grid(0).ShownText(0, 0), "Łucja Kovács");
  EXPECT_TRUE(Query().Active());
  EXPECT_TRUE(Query().Find<RichTextBox>("txtQuery").HasFocus());
  EXPECT_NE(files.ReadWhole(folder.File("Tessel.ini.xml")).find("caption=\"Shop\""),
            std::string::npos);
}

TEST_F(MainJobTest, AShortRunShowsNoProgressWindow) {
  Start();
  const ProgressCounter progress;
  Run("SELECT 1 AS one");
  EXPECT_EQ(Status(0), "1 record(s).");
  host.TheDesktop().TheClipboard().SetText("3");
  Run("SELECT <%^%> AS three");
  EXPECT_EQ(Status(0), "1 record(s).");
  EXPECT_EQ(progress.Count(), 0);
}

TEST_F(MainJobTest, AResultIsInSightWhereTheQueryWindowFilledTheFrame) {
  Start();
  host.Maximize(Query());
  ASSERT_TRUE(Query().Maximized());
  Run("SELECT x FROM nowhere");
  EXPECT_FALSE(Query().Maximized());
  auto& status = WidgetOf(Records(0), "txtStatus");
  const QPoint place = status.mapTo(status.window(), status.rect().center());
  EXPECT_EQ(status.window()->childAt(place)->window(), status.window());
  EXPECT_TRUE(AsQt(Records(0)).Outer().isAncestorOf(status.window()->childAt(place)))
      << "nothing stands before it";
  EXPECT_TRUE(Query().Find<RichTextBox>("txtQuery").HasFocus());
}

TEST_F(MainJobTest, NamesWithSpacesPicturesAndCountsWork) {
  Start();
  Run("SELECT \"Unit Price\" FROM \"Order Lines\" LIMIT 3");
  EXPECT_EQ(Status(0), "3 record(s).");
  Run("SELECT Picture FROM products WHERE Picture IS NOT NULL LIMIT 1");
  EXPECT_TRUE(Grid(0).ShownText(0, 0).starts_with("["));
  Run("CREATE TEMP TABLE t(a)");
  EXPECT_EQ(Status(0), "Execution completed.");
  Run("INSERT INTO t VALUES (1), (2)");
  EXPECT_EQ(Status(0), "2 record(s) affected.");
  Run("SELECT x FROM nowhere");
  EXPECT_NE(Status(0).find("no such table: nowhere"), std::string::npos) << Status(0);
  EXPECT_FALSE(Grid(0).Visible());
}

TEST_F(MainJobTest, TheSameSqlRunsOnEveryConnectionAndAFailureAsks) {
  Start();
  Connect("Provider=SQLite;Data Source=:memory:", "Empty");
  Connect(SampleConnection() + ";Mode=ReadOnly", "Again");
  Run("SELECT 1 AS one");
  for (std::size_t n = 0; n < 3; ++n) EXPECT_EQ(Status(n), "1 record(s).") << n;
  const std::string question = "The query did not complete successfully on:-\n    "
                               "Empty\n\nContinue executing on the remaining "
                               "connections?";
  host.OnMessage(question, MessageResult::Cancel);
  Run("SELECT * FROM customers");
  EXPECT_EQ(Status(0), "400 record(s).");
  EXPECT_EQ(Status(2), "1 record(s).");
  host.OnMessage(question, MessageResult::Ok);
  Run("SELECT * FROM customers");
  EXPECT_EQ(Status(2), "400 record(s).");
}

TEST_F(MainJobTest, ALongQueryIsCancelledAndTheWindowGoesOn) {
  Start();
  host.OnModal("dlgAsync", [this](Window& w) { host.Click(w, "cmdCancel"); });
  Run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT count(*) FROM n");
  EXPECT_EQ(Status(0), "Execution cancelled.");
  Run("SELECT 1");
  EXPECT_EQ(Status(0), "1 record(s).");
}

TEST_F(MainJobTest, ACancelledFetchShowsTheRowsSoFar) {
  Start();
  host.OnModal("dlgAsync", [this](Window& w) { host.Click(w, "cmdCancel"); });
  Run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) SELECT i FROM n");
  EXPECT_TRUE(Status(0).ends_with(" record(s). [Interrupted]")) << Status(0);
  EXPECT_TRUE(Grid(0).Visible());
  EXPECT_EQ(Grid(0).ShownText(0, 0), "1");
}

TEST_F(MainJobTest, ReconnectOpensTheConnectionAnew) {
  Start();
  Run("CREATE TEMP TABLE t(a)");
  host.Click(Records(0), "cmdReconnect");
  EXPECT_EQ(Status(0), "Re-connected.");
  Run("SELECT * FROM t");
  EXPECT_NE(Status(0).find("no such table: t"), std::string::npos);
}

TEST_F(MainJobTest, AFailedConnectionBringsTheDialogBack) {
  host.OnModal("dlgConnect", [this](Window& w) {
    w.Find<TextBox>("txtCnStr").SetText("Provider=Nonsense");
    host.Click(w, "cmdConnect");
  });
  const std::string reason = ReasonOfFailure("Provider=Nonsense");
  EXPECT_NE(reason.find("SQLite"), std::string::npos) << reason;
  host.OnMessage(reason, MessageResult::Ok);
  host.OnModal("dlgConnect", [this](Window& w) {
    EXPECT_EQ(w.Find<TextBox>("txtCnStr").Text(), "Provider=Nonsense");
    host.Click(w, "cmdCancel");
  });
  program.Main();
  EXPECT_EQ(program.Frame().RecordsWindowCount(), 0);
}

TEST_F(MainJobTest, QueryFilesAreSavedOpenedAndAskedAboutAtTheEnd) {
  Start();
  auto& text = Query().Find<RichTextBox>("txtQuery");
  program.Frame().QueryWindow().FocusText();
  host.Type(Query(), "txtQuery", "SELECT 1");
  EXPECT_EQ(Query().Caption(), "SQL [untitled *]");
  const std::string path = folder.File("first.sql");
  host.Answers().OnDialog([path](QWidget& dialog) {
    dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(path));
    dynamic_cast<QDialog&>(dialog).accept();
  });
  host.PressKey(Query(), 'S', shiftState::ctrl);
  WaitForKeyboard();
  EXPECT_EQ(files.ReadWhole(path), "SELECT 1");
  EXPECT_EQ(Query().Caption(), "SQL [first.sql]");
  host.PressKey(Query(), 'N', shiftState::ctrl);
  EXPECT_EQ(text.Text(), "");
  host.Type(Query(), "txtQuery", "x");
  host.OnMessage("Save changes to SQL?", MessageResult::Cancel);
  EXPECT_FALSE(Frame().Unload());
  host.OnMessage("Save changes to SQL?", MessageResult::No);
  EXPECT_TRUE(Frame().Unload());
}

TEST_F(MainJobTest, PostgreSqlAndMariaDbRunTheSameSqlAsSqlite) {
  DatabaseServer& postgres = TestServers::Instance().Postgres();
  DatabaseServer& mariaDb = TestServers::Instance().MariaDb();
  const auto odbc = [](const std::string& driver, const DatabaseServer& server) {
    const ServerLogin& login = server.Login();
    return "Driver={" + driver + "};Server=" + login.host + ";Port=" + std::to_string(login.port) +
           ";Database=" + login.database + ";UID=" + login.user + ";PWD=" + login.password;
  };
  Start();
  Connect(odbc("PostgreSQL Unicode", postgres), "PostgreSQL");
  Connect(odbc("MariaDB Unicode", mariaDb), "MariaDB");
  Run("SELECT 12.50 AS price, 'é😀' AS text, NULL AS missing");
  for (std::size_t n = 0; n < 3; ++n) {
    ASSERT_EQ(Status(n), "1 record(s).") << n;
    EXPECT_EQ(Grid(n).ShownText(0, 1), "é😀") << n;
  }
  EXPECT_EQ(Grid(1).ShownText(0, 0), "12.50");
  EXPECT_TRUE(Records(1).Find<ComboBox>("cboCatalog").Visible());
  host.OnModal("dlgAsync", [this](Window& w) { host.Click(w, "cmdCancel"); });
  program.Frame().RecordsWindows().at(1)->DoQueryTags("select pg_sleep(60)", false, newQuery);
  EXPECT_EQ(Status(1), "Execution cancelled.");
}

}  // namespace
}  // namespace tessel::test
