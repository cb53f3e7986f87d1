#include "logic/results/conversions/RecordConversion.h"

#include "contract/desktop/controls/TextBox.h"
#include "tests/logic/results/RecordsFixture.h"

namespace tessel {
namespace {

Value Text(std::string text) { return Value(std::move(text)); }
Value Number(std::int64_t number) { return Value(number); }

/// What the viewer was given.
struct Shown {
  std::string text;
  int helpContext = 0;
  std::string filter;
  Rect bounds;
  bool locked = false;
  bool wraps = false;
};

class RecordConversionTest : public test::RecordsFixture {
 protected:
  RecordConversionTest() { EXPECT_TRUE(Connect()); }

  void Give(std::vector<FieldInfo> fields, MemoryRows rows, const std::string& sql = "select") {
    data.Answer(sql, std::move(fields), std::move(rows));
    ASSERT_TRUE(Run(sql));
  }
  /// One column of that name with these values.
  void GiveColumn(const std::string& name, DataType type, const std::vector<Value>& values) {
    MemoryRows rows;
    for (const Value& value : values) rows.push_back({value});
    Give({MemoryField(name, type)}, std::move(rows));
  }
  /// The fields id and name with the rows (1, a'b), (2, null) and (3, c).
  void GiveThree(const std::string& sql = "select * from Orders") { RunThreeRows(sql); }

  /// Chooses the command and closes the viewer, which must come up.
  Shown Choose(const std::string& command) {
    Shown shown;
    bool came = false;
    desktop.OnModal("frmText", [&](test::HeadlessWindow& w) {
      came = true;
      auto& box = w.Find<RichTextBox>("txtText");
      desktop.CancelFile();
      w.Click("cmdSave");
      shown = {box.Text(), w.HelpContext(), desktop.FileDialogs().back().filter,
               w.Bounds(), box.Locked(),    box.RightMargin() == 0};
      w.CloseByControlBox();
    });
    W().ChooseMenu(command);
    EXPECT_TRUE(came) << command;
    return shown;
  }
  std::string Converted(const std::string& command) { return Choose(command).text; }
  void ExpectNoViewer() {
    for (const std::string& form : desktop.Modals()) EXPECT_NE(form, "frmText");
  }
  std::string ProgressText() {
    return desktop.WindowOf("dlgAsync").Find<Label>("lblMessage").Caption();
  }
};

TEST_F(RecordConversionTest, TheRecordsBoxOpensTheRecordsMenuAndStaysUnchecked) {
  GiveThree();
  bool came = false;
  desktop.OnModal("frmText", [&](test::HeadlessWindow& w) {
    came = true;
    w.CloseByControlBox();
  });
  desktop.ExpectPopup("menuRecords", "mnuCvtCSV");
  W().Click("chkRecords");
  EXPECT_TRUE(came);
  EXPECT_FALSE(W().Find<CheckBox>("chkRecords").Value());
}

TEST_F(RecordConversionTest, TheViewerTellsWhatItShowsAndSavesWithItsEnding) {
  GiveThree();
  const auto titleAndEnding = [this](const char* command) {
    std::string title;
    desktop.OnModal("frmText", [&](test::HeadlessWindow& w) {
      title = w.Caption();
      desktop.CancelFile();
      w.Click("cmdSave");
      w.CloseByControlBox();
    });
    W().ChooseMenu(command);
    return title + " ." + desktop.FileDialogs().back().defaultExtension;
  };
  EXPECT_EQ(titleAndEnding("mnuCvtCSV"), "CSV of Shop, 3 records .csv");
  EXPECT_EQ(titleAndEnding("mnuCvtTabDelimited"), "Tab Delimited of Shop, 3 records .");
  EXPECT_EQ(titleAndEnding("mnuCvtInsertSQL"), "Insert (SQL) of Shop, 3 records .sql");
  EXPECT_EQ(titleAndEnding("mnuCvtHTMLTable"), "HTML <table> of Shop, 3 records .html");
  EXPECT_EQ(titleAndEnding("mnuCvtArrayC"), "Array (C) of Shop, 3 records .c");
}

// --- what each writes ----------------------------------------------------------------------------

TEST_F(RecordConversionTest, CsvHasAHeaderAndPlainValuesWithNullEmpty) {
  GiveThree();
  EXPECT_EQ(Converted("mnuCvtCSV"), "id,name\r\n1,a'b\r\n2,\r\n3,c\r\n");
}

TEST_F(RecordConversionTest, QuotedCsvQuotesTextsAloneAndNoNames) {
  Give({MemoryField("my id", DataType::Integer), MemoryField("na\"me")},
       {{Number(1), Text("say \"hi\", you")}, {Number(2), Value()}});
  EXPECT_EQ(Converted("mnuCvtQuotedCSV"), "my id,na\"me\r\n1,\"say \"\"hi\"\", you\"\r\n2,\r\n");
}

TEST_F(RecordConversionTest, TabDelimitedWritesNullAsAWord) {
  GiveThree();
  EXPECT_EQ(Converted("mnuCvtTabDelimited"), "id\tname\r\n1\ta'b\r\n2\tNULL\r\n3\tc\r\n");
}

TEST_F(RecordConversionTest, InsertWritesAStatementARecord) {
  Give({MemoryField("Id", DataType::Integer), MemoryField("Unit Price", DataType::Double),
        MemoryField("2nd")},
       {{Number(7), Value(0.5), Text("O'Brien")}, {Number(8), Value(), Value()}},
       "select * from Orders");
  EXPECT_EQ(Converted("mnuCvtInsertSQL"),
            "INSERT INTO Orders(Id, [Unit Price], [2nd]) VALUES(7, 0.5, 'O''Brien')\r\n"
            "INSERT INTO Orders(Id, [Unit Price], [2nd]) VALUES(8, NULL, NULL)\r\n");
}

TEST_F(RecordConversionTest, SetListsTheFirstColumnOnly) {
  Give({MemoryField("name"), MemoryField("id", DataType::Integer)},
       {{Text("O'Brien"), Number(1)}, {Text("b"), Number(2)}, {Value(), Number(3)}});
  EXPECT_EQ(Converted("mnuCvtSetSQL"), "('O''Brien', 'b', NULL)");
}

TEST_F(RecordConversionTest, HtmlIsATableWithAnEmptyCellForNull) {
  Give({MemoryField("a<b"), MemoryField("id", DataType::Integer)},
       {{Text("x<y & \"z\""), Number(1)}, {Value(), Number(2)}});
  EXPECT_EQ(Converted("mnuCvtHTMLTable"),
            "<table border=\"1\">\r\n<tr><th>a<b</th><th>id</th></tr>\r\n"
            "<tr><td>x&lt;y &amp; &quot;z&quot;</td><td>1</td></tr>\r\n"
            "<tr><td></td><td>2</td></tr>\r\n</table>\r\n");
}

TEST_F(RecordConversionTest, ACArrayOfSeveralColumnsHasABracedLineARecord) {
  GiveThree();
  EXPECT_EQ(Converted("mnuCvtArrayC"), "{\r\n{1, \"a'b\"},\r\n{2, NULL},\r\n{3, \"c\"}\r\n}");
}

TEST_F(RecordConversionTest, ACArrayOfOneColumnIsASingleLine) {
  GiveThree();
  W().SelectGridColumns("DataGrid", 0, 0);
  EXPECT_EQ(Converted("mnuCvtArrayC"), "{1, 2, 3}");
}

TEST_F(RecordConversionTest, EachPassesItsHelpTopicAndFileTypes) {
  GiveThree();
  const std::string own = "Text Files (*.txt)|*.txt|All Files (*.*)|*.*";
  const std::string sql = "SQL Files (*.sql)|*.sql|" + own;
  const std::string csv = "CSV Files (*.csv)|*.csv|" + own;
  const std::map<std::string, std::pair<int, std::string>> expected = {
      {"mnuCvtCSV", {8701, csv}},
      {"mnuCvtQuotedCSV", {8701, csv}},
      {"mnuCvtTabDelimited", {8703, own}},
      {"mnuCvtInsertSQL", {8704, sql}},
      {"mnuCvtSetSQL", {8705, sql}},
      {"mnuCvtHTMLTable", {8706, "HTML Files (*.html,*.htm)|*.html;*.htm|" + own}},
      {"mnuCvtArrayC", {8707, "C/C++ Files (*.c,*.cpp)|*.c;*.cpp|" + own}}};
  EXPECT_EQ(ConversionCommands().size(), expected.size());
  for (const std::string& command : ConversionCommands()) {
    const Shown shown = Choose(command);
    EXPECT_EQ(shown.helpContext, expected.at(command).first) << command;
    EXPECT_EQ(shown.filter, expected.at(command).second) << command;
    EXPECT_EQ(shown.bounds.width, 9600) << command;
    EXPECT_EQ(shown.bounds.height, 6300) << command;
    EXPECT_TRUE(shown.locked) << command;
    EXPECT_FALSE(shown.wraps) << command;
  }
}

// --- values --------------------------------------------------------------------------------------

TEST_F(RecordConversionTest, AnEmptyRecordsetGivesWhatStandsAroundTheRecords) {
  Give({MemoryField("id", DataType::Integer), MemoryField("name")}, {}, "select * from Orders");
  EXPECT_EQ(Converted("mnuCvtCSV"), "id,name\r\n");
  EXPECT_EQ(Converted("mnuCvtInsertSQL"), "");
  EXPECT_EQ(Converted("mnuCvtSetSQL"), "()");
  EXPECT_EQ(Converted("mnuCvtArrayC"), "{\r\n\r\n}");
  EXPECT_EQ(Converted("mnuCvtHTMLTable"),
            "<table border=\"1\">\r\n<tr><th>id</th><th>name</th></tr>\r\n\r\n</table>\r\n");
  EXPECT_EQ(desktop.ProcessPendingCount(), 0);
}

TEST_F(RecordConversionTest, BinaryIsUnquotedHexadecimalInSqlAndTextElsewhere) {
  const Bytes bytes = {std::byte{0x41}, std::byte{0x27}, std::byte{0xAB}};
  GiveColumn("data", DataType::VarBinary, {Value(bytes)});
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    w.Type("txtText", "Files");
    w.PressKey(key::enter);
  });
  EXPECT_EQ(Converted("mnuCvtInsertSQL"), "INSERT INTO Files(data) VALUES(0x4127AB)\r\n");
  EXPECT_EQ(Converted("mnuCvtSetSQL"), "(0x4127AB)");
  EXPECT_EQ(Converted("mnuCvtCSV"), "data\r\nA'\xEF\xBF\xBD\r\n");
  EXPECT_EQ(Converted("mnuCvtQuotedCSV"), "data\r\n\"A'\xEF\xBF\xBD\"\r\n");
}

TEST_F(RecordConversionTest, HtmlKeepsRunsOfBlanksAndLineBreaks) {
  GiveColumn("t", DataType::VarWChar, {Text("a  b"), Text("one\r\ntwo")});
  EXPECT_EQ(Converted("mnuCvtHTMLTable"),
            "<table border=\"1\">\r\n<tr><th>t</th></tr>\r\n<tr><td>a &nbsp;b</td></tr>\r\n"
            "<tr><td>one<br>\r\ntwo</td></tr>\r\n</table>\r\n");
}

TEST_F(RecordConversionTest, ACArrayEscapesTabsAndDoubleQuotes) {
  GiveColumn("t", DataType::VarWChar, {Text("a\t\"b\"\\"), Value()});
  EXPECT_EQ(Converted("mnuCvtArrayC"), R"({"a\t\"b\"\\", NULL})");
}

TEST_F(RecordConversionTest, TrueIsOneInEveryFormat) {
  GiveColumn("t", DataType::Boolean, {Value(true)});
  const std::map<std::string, std::string> expected = {
      {"mnuCvtCSV", "t\r\n1\r\n"},
      {"mnuCvtQuotedCSV", "t\r\n1\r\n"},
      {"mnuCvtTabDelimited", "t\r\n1\r\n"},
      {"mnuCvtSetSQL", "(1)"},
      {"mnuCvtHTMLTable",
       "<table border=\"1\">\r\n<tr><th>t</th></tr>\r\n<tr><td>1</td></tr>\r\n</table>\r\n"},
      {"mnuCvtArrayC", "{1}"}};
  for (const auto& [command, text] : expected) EXPECT_EQ(Converted(command), text);
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    w.Type("txtText", "flags");
    w.PressKey(key::enter);
  });
  EXPECT_EQ(Converted("mnuCvtInsertSQL"), "INSERT INTO flags(t) VALUES(1)\r\n");
}

TEST_F(RecordConversionTest, MomentsAreQuotedLikeTexts) {
  GiveColumn("t", DataType::DBTimeStamp, {Value(Moment{"1899-12-30 00:00:00"})});
  EXPECT_EQ(Converted("mnuCvtSetSQL"), "('1899-12-30 00:00:00')");
  EXPECT_EQ(Converted("mnuCvtCSV"), "t\r\n1899-12-30 00:00:00\r\n");
}

// --- which rows and columns ----------------------------------------------------------------------

TEST_F(RecordConversionTest, SelectedRowsComeInTheOrderOfSelection) {
  GiveThree();
  W().SelectGridRows("DataGrid", {2, 0, 1});
  EXPECT_EQ(Converted("mnuCvtCSV"), "id,name\r\n3,c\r\n1,a'b\r\n2,\r\n");
}

TEST_F(RecordConversionTest, SelectedColumnsAloneAreTaken) {
  Give({MemoryField("a"), MemoryField("b"), MemoryField("c")}, {{Text("1"), Text("2"), Text("3")}});
  W().SelectGridColumns("DataGrid", 1, 2);
  EXPECT_EQ(Converted("mnuCvtCSV"), "b,c\r\n2,3\r\n");
  EXPECT_EQ(Converted("mnuCvtSetSQL"), "('2')");
  EXPECT_EQ(Converted("mnuCvtArrayC"), "{\r\n{\"2\", \"3\"}\r\n}");
}

TEST_F(RecordConversionTest, TheGridStaysOnItsRow) {
  GiveThree();
  W().ClickGridCell("DataGrid", 1, 0);
  static_cast<void>(Converted("mnuCvtCSV"));
  EXPECT_EQ(Grid().DataSource()->CurrentBookmark(), Grid().DataSource()->BookmarkAt(1));
}

// --- progress ------------------------------------------------------------------------------------

TEST_F(RecordConversionTest, TheProgressWindowTellsWhatIsConverted) {
  GiveThree();
  std::vector<std::string> seen;
  desktop.OnProcessPending([&](int) { seen.push_back(ProgressText()); });
  static_cast<void>(Converted("mnuCvtCSV"));
  EXPECT_EQ(seen, std::vector<std::string>(3, "Converting all 3 records..."));
  seen.clear();
  W().SelectGridRows("DataGrid", {1, 0});
  static_cast<void>(Converted("mnuCvtCSV"));
  EXPECT_EQ(seen, std::vector<std::string>(2, "Converting 2 selected records..."));
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(RecordConversionTest, TheWindowIsServedEverySixteenRecordsOfMany) {
  GiveColumn("n", DataType::Integer, std::vector<Value>(1000, Number(1)));
  static_cast<void>(Converted("mnuCvtCSV"));
  EXPECT_EQ(desktop.ProcessPendingCount(), 63);
}

TEST_F(RecordConversionTest, CancelKeepsAndShowsWhatIsDone) {
  GiveThree();
  desktop.OnProcessPending([this](int call) {
    if (call == 2) desktop.WindowOf("dlgAsync").Click("cmdCancel");
  });
  EXPECT_EQ(Converted("mnuCvtHTMLTable"),
            "<table border=\"1\">\r\n<tr><th>id</th><th>name</th></tr>\r\n"
            "<tr><td>1</td><td>a'b</td></tr>\r\n<tr><td>2</td><td></td></tr>\r\n</table>\r\n");
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

TEST_F(RecordConversionTest, AFailureIsShownCriticallyAndNoTextComesUp) {
  GiveThree();
  const auto rows = Grid().DataSource();
  desktop.ExpectMessage(
      "This is not possible while the recordset is closed.", MessageResult::Ok,
      [](const Message& message) { EXPECT_EQ(message.icon, MessageIcon::Critical); });
  rows->Close();
  W().ChooseMenu("mnuCvtCSV");
  ExpectNoViewer();
  EXPECT_TRUE(desktop.WindowsOf("dlgAsync").empty());
}

// --- the name of the table -----------------------------------------------------------------------

TEST_F(RecordConversionTest, WithoutFromInsertAsksForTheTable) {
  GiveThree("exec orders");
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    EXPECT_EQ(w.Find<Label>("lblPrompt").Caption(), "Table name:-");
    EXPECT_EQ(w.Find<TextBox>("txtText").Text(), "");
    EXPECT_EQ(w.HelpContext(), 8704);
    w.Type("txtText", "My Table");
    w.PressKey(key::enter);
  });
  W().SelectGridRows("DataGrid", {2});
  EXPECT_EQ(Converted("mnuCvtInsertSQL"), "INSERT INTO [My Table](id, name) VALUES(3, 'c')\r\n");
}

TEST_F(RecordConversionTest, AnEmptyOrCancelledNameGivesNoOutput) {
  GiveThree("exec orders");
  for (const int answer : {key::enter, key::escape}) {
    desktop.OnModal("dlgText", [answer](test::HeadlessWindow& w) { w.PressKey(answer); });
    W().ChooseMenu("mnuCvtInsertSQL");
  }
  ExpectNoViewer();
}

TEST_F(RecordConversionTest, ShiftAsksForTheNameAlthoughTheQueryTellsIt) {
  GiveThree();
  desktop.HoldKey(key::shift);
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    w.Type("txtText", "Copy");
    w.PressKey(key::enter);
  });
  EXPECT_TRUE(Converted("mnuCvtInsertSQL").starts_with("INSERT INTO Copy(id, name) VALUES("));
}

TEST(TableNameInTest, TakesTheWordBehindTheFirstFrom) {
  EXPECT_EQ(TableNameIn("select * from Orders"), "Orders");
  EXPECT_EQ(TableNameIn("select *\r\nFrom\t  dbo.Orders\nwhere a = 1"), "dbo.Orders");
  EXPECT_EQ(TableNameIn("select * from a,b from c"), "a");
  EXPECT_EQ(TableNameIn("select * from a; select * from b"), "a");
  EXPECT_EQ(TableNameIn("select * from Zoë where 1 = 1"), "Zoë");
}

TEST(TableNameInTest, IsEmptyWithoutFromOrAWordBehindIt) {
  EXPECT_EQ(TableNameIn("exec orders"), "");
  EXPECT_EQ(TableNameIn("from a"), "");
  EXPECT_EQ(TableNameIn("select * from(select 1)"), "");
  EXPECT_EQ(TableNameIn("select * from "), "");
  EXPECT_EQ(TableNameIn(""), "");
}

TEST(TableNameInTest, TakesAQuotedNameWhole) {
  EXPECT_EQ(TableNameIn("select * from [Order Details] where 1 = 1"), "[Order Details]");
  EXPECT_EQ(TableNameIn("select * from \"Order Details\";"), "\"Order Details\"");
  EXPECT_EQ(TableNameIn("select * from `a,b`, c"), "`a,b`");
  EXPECT_EQ(TableNameIn("select *\nfrom\n\"a\tb\"\nwhere 1 = 1"), "\"a\tb\"");
  EXPECT_EQ(TableNameIn("select * from dbo.\"a \"\"b\"\n where 1 = 1"), "dbo.\"a \"\"b\"");
}

TEST(TableNameInTest, IsEmptyForWhatIsNoTable) {
  EXPECT_EQ(TableNameIn("select * from (select * from d) x"), "");
  EXPECT_EQ(TableNameIn("select (select 1 from d) x"), "");
  EXPECT_EQ(TableNameIn("select * from generate_series(1,10)"), "");
  EXPECT_EQ(TableNameIn("select * from [Order where 1 = 1"), "");
  EXPECT_EQ(TableNameIn("select * from \"Order"), "");
  EXPECT_EQ(TableNameIn("select * from /* here */ orders"), "");
}

TEST_F(RecordConversionTest, InsertTakesAQuotedTableFromTheQuery) {
  RunThreeRows("select * from \"Order Details\"");
  EXPECT_TRUE(Converted("mnuCvtInsertSQL").starts_with("INSERT INTO [Order Details](id, name) "));
}

TEST_F(RecordConversionTest, InsertAsksForTheTableOfAQueryInParentheses) {
  RunThreeRows("select * from (select * from d) x");
  desktop.OnModal("dlgText", [](test::HeadlessWindow& w) {
    w.Type("txtText", "My Table");
    w.PressKey(key::enter);
  });
  EXPECT_TRUE(Converted("mnuCvtInsertSQL").starts_with("INSERT INTO [My Table](id, name) "));
}

TEST_F(RecordConversionTest, InsertWritesTheQuotesOfADatabaseThatTakesNoBrackets) {
  data.properties.Set("Bracket Identifiers", std::int64_t{0});
  data.properties.Set("Identifier Case Sensitivity", std::int64_t{2});
  W().Click("cmdReconnect");
  data.Answer("select * from Orders o", {MemoryField("Order ID"), MemoryField("user")},
              {{Text("a"), Text("b")}});
  ASSERT_TRUE(Run("select * from Orders o"));
  EXPECT_EQ(Converted("mnuCvtInsertSQL"),
            "INSERT INTO Orders(\"Order ID\", \"user\") VALUES('a', 'b')\r\n");
}

TEST(ConversionOfTest, KnowsTheCommandsAlone) {
  for (const std::string& command : ConversionCommands())
    EXPECT_EQ(ConversionOf(command, true).command, command);
  EXPECT_THROW(static_cast<void>(ConversionOf("mnuCvtOther", true)), Error);
}

}  // namespace
}  // namespace tessel
