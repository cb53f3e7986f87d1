// The command from the menu to the file: what is offered, what is remembered, and what becomes of
// the old file when it is cancelled or fails.

#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/results/export/RememberedChoices.h"
#include "tests/logic/results/RecordsFixture.h"

namespace tessel::test {
namespace {

class ExportCommandTest : public RecordsFixture {
 protected:
  ExportCommandTest() { EXPECT_TRUE(Connect()); }

  [[nodiscard]] std::string Path(const std::string& name = "out.txt") const {
    return folder.File(name);
  }
  [[nodiscard]] std::string Content() const {
    return files.FileExists(Path()) ? files.ReadWhole(Path()) : "(no file)";
  }

  /// Chooses the command; `act` is what the user does in the dialog.
  void Choose(const std::function<void(HeadlessWindow&)>& act) {
    bool came = false;
    desktop.OnModal("dlgExport", [&](HeadlessWindow& w) {
      came = true;
      act(w);
    });
    W().ChooseMenu("mnuRowsExport");
    EXPECT_TRUE(came);
  }
  /// Exports to Path in that format.
  void Export(
      ExportFormat format, const std::function<void(HeadlessWindow&)>& set = [](auto&) {}) {
    Choose([&](HeadlessWindow& w) {
      w.SelectItem("cboFormat", static_cast<int>(format));
      w.Find<TextBox>("txtFile").SetText(Path());
      set(w);
      w.Click("cmdOK");
    });
  }
  static std::vector<std::string> EntriesOf(HeadlessWindow& w, const char* combo) {
    std::vector<std::string> entries;
    auto& list = w.Find<ComboBox>(combo);
    for (int i = 0; i < list.ListCount(); ++i) entries.push_back(list.List(i));
    return entries;
  }
};

TEST_F(ExportCommandTest, AllRowsGoToTheFile) {
  RunThreeRows("select * from Orders");
  Export(ExportFormat::Csv);
  EXPECT_EQ(Content(), "id,name\r\n1,a'b\r\n2,\r\n3,c\r\n");
  EXPECT_EQ(Status(), "[12:00:00]  3 records exported to " + Path() + ".");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(ExportCommandTest, TheKeyDoesWhatTheMenuDoes) {
  RunThreeRows();
  bool came = false;
  desktop.OnModal("dlgExport", [&](HeadlessWindow& w) {
    came = true;
    w.Click("cmdCancel");
  });
  W().PressKey('E', shiftState::ctrl | shiftState::shift);
  EXPECT_TRUE(came);
  EXPECT_EQ(Content(), "(no file)");
}

TEST_F(ExportCommandTest, TheSelectionIsOfferedFirstAndTakenInItsOrder) {
  RunThreeRows();
  W().SelectGridRows("DataGrid", {2, 0});
  Export(ExportFormat::JsonLines, [](HeadlessWindow& w) {
    EXPECT_EQ(EntriesOf(w, "cboWhat"),
              (std::vector<std::string>{"Selection: 2 records, 2 columns", "All rows: 3 records"}));
  });
  EXPECT_EQ(Content(), "{\"id\":3,\"name\":\"c\"}\n{\"id\":1,\"name\":\"a'b\"}\n");
}

TEST_F(ExportCommandTest, SelectedColumnsAreTakenAlone) {
  RunThreeRows();
  W().SelectGridColumns("DataGrid", 1, 1);
  Export(ExportFormat::JsonLines);
  EXPECT_EQ(Content(), "{\"name\":\"a'b\"}\n{\"name\":null}\n{\"name\":\"c\"}\n");
}

TEST_F(ExportCommandTest, TheRowsOfAllConnectionsStandInOneFile) {
  RunThreeRows();
  host.rowsOfAll = {{"Shop", Grid().DataSource()}, {"Other", Grid().DataSource()}};
  Export(ExportFormat::Csv, [](HeadlessWindow& w) {
    EXPECT_EQ(EntriesOf(w, "cboWhat").back(), "All connections: 6 records of 2");
    w.SelectItem("cboWhat", 1);
  });
  EXPECT_EQ(Content(), "Connection,id,name\r\nShop,1,a'b\r\nShop,2,\r\nShop,3,c\r\n"
                       "Other,1,a'b\r\nOther,2,\r\nOther,3,c\r\n");
}

/// Of each those on show: one is sorted and hides a row, the other is as it was opened.
TEST_F(ExportCommandTest, TheRowsOfAllConnectionsAreThoseOnShow) {
  RunThreeRows();
  const auto other = Grid().DataSource()->Clone(LockType::ReadOnly);
  RowArrangement arrangement{.sort = {{0, true}}};
  arrangement.conditions = {
      {.field = 0, .comparison = Comparison::NotEqual, .value = Value(std::int64_t{1})}};
  const auto work = other->StartArrange(arrangement);
  while (!work->HasEnded()) work->Step();
  ASSERT_EQ(other->RecordCount(), 2);
  host.rowsOfAll = {{"Other", other}, {"None", nullptr}, {"Shop", Grid().DataSource()}};
  Export(ExportFormat::Csv, [](HeadlessWindow& w) {
    EXPECT_EQ(EntriesOf(w, "cboWhat").back(), "All connections: 5 records of 3");
    w.SelectItem("cboWhat", 1);
  });
  EXPECT_EQ(Content(), "Connection,id,name\r\nOther,3,c\r\nOther,2,\r\n"
                       "Shop,1,a'b\r\nShop,2,\r\nShop,3,c\r\n");
}

TEST_F(ExportCommandTest, ATableAndAFileAreProposed) {
  RunThreeRows("select * from [Order Details] where 1 = 1");
  Choose([](HeadlessWindow& w) {
    w.SelectItem("cboFormat", static_cast<int>(ExportFormat::Sql));
    EXPECT_EQ(w.Find<TextBox>("txtTable").Text(), "Order Details");
    EXPECT_EQ(w.Find<TextBox>("txtFile").Text(), "Order Details.sql");
    w.SelectItem("cboFormat", static_cast<int>(ExportFormat::Sheets));
    EXPECT_EQ(w.Find<TextBox>("txtFile").Text(), "Order Details.xlsx");
    w.Click("cmdCancel");
  });
}

TEST_F(ExportCommandTest, ChoicesWithoutMeaningInTheFormatAreDisabled) {
  RunThreeRows();
  Choose([](HeadlessWindow& w) {
    const auto enabled = [&w](const char* name) { return w.Find<Control>(name).Enabled(); };
    w.SelectItem("cboFormat", static_cast<int>(ExportFormat::Csv));
    EXPECT_TRUE(enabled("cboDelimiter") && enabled("cboEncoding") && enabled("chkHeader"));
    EXPECT_FALSE(enabled("txtTable") || enabled("chkCreate"));
    w.SelectItem("cboFormat", static_cast<int>(ExportFormat::Sql));
    EXPECT_TRUE(enabled("txtTable") && enabled("cboDatabase") && enabled("txtBatch"));
    EXPECT_FALSE(enabled("cboDelimiter") || enabled("cboEncoding") || enabled("cboNull"));
    w.SelectItem("cboFormat", static_cast<int>(ExportFormat::JsonArray));
    EXPECT_FALSE(enabled("cboDelimiter") || enabled("cboEncoding") || enabled("txtTable"));
    w.Click("cmdCancel");
  });
}

TEST_F(ExportCommandTest, ChoicesAreRemembered) {
  RunThreeRows();
  Export(ExportFormat::Csv, [](HeadlessWindow& w) {
    w.SelectItem("cboDelimiter", 1);
    w.SelectItem("cboQuotes", 2);
    w.SelectItem("cboEncoding", 1);
    w.SelectItem("cboLineEnd", 0);
    w.SelectItem("cboNull", 1);
    w.SelectItem("cboDecimal", 1);
    w.SelectItem("cboBinary", 1);
    w.Click("chkHeader");
  });
  EXPECT_EQ(Content(), "\xEF\xBB\xBF\"1\";\"a'b\"\n\"2\";NULL\n\"3\";\"c\"\n");
  const ExportChoices choices = RememberedChoices(global, SqlDialect::SQLite);
  EXPECT_EQ(choices.delimiter, ';');
  EXPECT_EQ(choices.quotes, QuoteRule::All);
  EXPECT_EQ(choices.code, TextCode::Utf8WithMark);
  EXPECT_EQ(choices.nullText, "NULL");
  EXPECT_EQ(choices.decimalSign, ',');
  EXPECT_EQ(choices.binary, BinaryForm::Base64);
  EXPECT_FALSE(choices.header || choices.lineEndWithReturn);
  folder.Write("Tessel.view.txt",
               "export.delimiter=77\nexport.format=-1\nexport.rows-per-insert=0\n");
  EXPECT_EQ(RememberedChoices(global, SqlDialect::MariaDB).database, SqlDialect::MariaDB);
  EXPECT_EQ(RememberedChoices(global, SqlDialect::MariaDB).delimiter, ',');
  EXPECT_EQ(RememberedChoices(global, SqlDialect::MariaDB).rowsPerInsert, 1);
}

TEST_F(ExportCommandTest, SqlIsThatOfTheDatabaseChosen) {
  RunThreeRows();
  Export(ExportFormat::Sql, [](HeadlessWindow& w) {
    w.SelectItem("cboDatabase", 1);
    w.Find<TextBox>("txtTable").SetText("copy");
    w.Find<TextBox>("txtBatch").SetText("2");
    w.Click("chkCreate");
  });
  EXPECT_EQ(Content(), "SET client_encoding = 'UTF8';\nSET standard_conforming_strings = on;\n"
                       "CREATE TABLE copy (\n  \"id\" integer,\n  \"name\" text\n);\n"
                       "INSERT INTO copy (\"id\", \"name\") VALUES\n(1, 'a''b'),\n(2, NULL);\n"
                       "INSERT INTO copy (\"id\", \"name\") VALUES\n(3, 'c');\n");
}

// --- what is asked -------------------------------------------------------------------------------

TEST_F(ExportCommandTest, AFileThatIsThereIsReplacedOnlyWhenTheUserSaysSo) {
  RunThreeRows();
  folder.Write("out.txt", "old");
  const std::string question = "The file '" + Path() + "' is there already. Replace it?";
  desktop.ExpectMessage(question, MessageResult::No);
  Choose([&](HeadlessWindow& w) {
    w.Find<TextBox>("txtFile").SetText(Path());
    w.Click("cmdOK");
    EXPECT_TRUE(w.Visible());
    w.Click("cmdCancel");
  });
  EXPECT_EQ(Content(), "old");
  desktop.ExpectMessage(question, MessageResult::Yes);
  Export(ExportFormat::Csv);
  EXPECT_NE(Content(), "old");
}

TEST_F(ExportCommandTest, AFileChosenInTheFileDialogIsNotAskedAboutAgain) {
  RunThreeRows();
  folder.Write("out.txt", "old");
  desktop.AnswerFile(Path());
  Choose([](HeadlessWindow& w) {
    w.Click("cmdBrowse");
    w.Click("cmdOK");
  });
  EXPECT_NE(Content(), "old");
}

TEST_F(ExportCommandTest, AFileAndForSqlATableAreNeeded) {
  RunThreeRows("exec orders");
  desktop.ExpectMessage("Name the table to insert into.");
  desktop.ExpectMessage("Name the file to write.");
  Choose([&](HeadlessWindow& w) {
    w.SelectItem("cboFormat", static_cast<int>(ExportFormat::Sql));
    w.Find<TextBox>("txtFile").SetText(Path());
    w.Click("cmdOK");
    w.Find<TextBox>("txtFile").SetText("");
    w.Click("cmdOK");
    w.Click("cmdCancel");
  });
  EXPECT_EQ(Content(), "(no file)");
}

// --- what stays ----------------------------------------------------------------------------------

TEST_F(ExportCommandTest, CancelLeavesTheOldFile) {
  MemoryRows rows(100'000, {Value(std::int64_t{1})});
  data.Answer("many", {MemoryField("n", DataType::Integer)}, std::move(rows));
  ASSERT_TRUE(Run("many"));
  folder.Write("out.txt", "old");
  desktop.ExpectMessage("The file '" + Path() + "' is there already. Replace it?",
                        MessageResult::Yes);
  desktop.OnProcessPending([this](int call) {
    EXPECT_EQ(Content(), "old");
    if (call == 2) desktop.WindowOf("dlgAsync").PressKey(key::escape);
  });
  Export(ExportFormat::Csv);
  EXPECT_EQ(Content(), "old");
  EXPECT_EQ(Status(), "[12:00:00]  Export cancelled.");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(ExportCommandTest, AFullDiskLeavesTheOldFileAndIsShown) {
  RunThreeRows();
  folder.Write("out.txt", "old");
  files.FailBeyond(10);
  desktop.ExpectMessage("The file '" + Path() + "' is there already. Replace it?",
                        MessageResult::Yes);
  desktop.ExpectMessage(
      Path() + ": No space left on device", MessageResult::Ok,
      [](const Message& message) { EXPECT_EQ(message.icon, MessageIcon::Critical); });
  Export(ExportFormat::Csv);
  EXPECT_EQ(Content(), "old");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(ExportCommandTest, ACharacterWithoutBytesIsToldWithItsPlace) {
  data.Answer("select", {MemoryField("id", DataType::Integer), MemoryField("name")},
              {{Value(std::int64_t{1}), Value(std::string("\u00FC"))},
               {Value(std::int64_t{2}), Value(std::string("5 \u20AC"))}});
  ASSERT_TRUE(Run("select"));
  desktop.ExpectMessage(
      "Record 2, column \"name\": the character \"\u20AC\" (U+20AC) is not in ISO-8859-1.");
  Export(ExportFormat::Csv, [](HeadlessWindow& w) { w.SelectItem("cboEncoding", 3); });
  EXPECT_EQ(Content(), "(no file)");
}

TEST_F(ExportCommandTest, RowsThatWereClosedMeanwhileAreTold) {
  MemoryRows rows(100'000, {Value(std::int64_t{1})});
  data.Answer("many", {MemoryField("n", DataType::Integer)}, std::move(rows));
  ASSERT_TRUE(Run("many"));
  const auto shown = Grid().DataSource();
  desktop.OnProcessPending([&](int call) {
    if (call == 2) shown->Close();
  });
  desktop.ExpectMessage("This is not possible while the recordset is closed.");
  Export(ExportFormat::Csv);
  EXPECT_EQ(Content(), "(no file)");
}

TEST_F(ExportCommandTest, TheProgressWindowTellsCountPercentAndRate) {
  MemoryRows rows(200'000, {Value(std::int64_t{1})});
  data.Answer("many", {MemoryField("n", DataType::Integer)}, std::move(rows));
  ASSERT_TRUE(Run("many"));
  std::string done;
  std::string message;
  desktop.OnProcessPending([&](int call) {
    if (call <= 4) desktop.AdvanceTime(1000);
    done = desktop.WindowOf("dlgAsync").Find<Label>("lblDone").Caption();
    message = desktop.WindowOf("dlgAsync").Find<Label>("lblMessage").Caption();
  });
  Export(ExportFormat::Csv);
  EXPECT_EQ(message, "Exporting 200000 records to out.txt...");
  EXPECT_EQ(done.substr(done.find(" of ")),
            " of 200000 records, " + done.substr(done.find(", ") + 2));
  EXPECT_NE(done.find(" %, "), std::string::npos) << done;
  EXPECT_NE(done.find(" a second"), std::string::npos) << done;
}

}  // namespace
}  // namespace tessel::test
