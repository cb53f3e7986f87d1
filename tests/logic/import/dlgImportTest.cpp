#include "logic/import/dlgImport.h"

#include <limits>

#include <gmock/gmock.h>

#include "contract/desktop/controls/TextBox.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/DataSteps.h"

namespace tessel {
namespace {

using test::HeadlessWindow;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;

class dlgImportTest : public test::LogicFixture {
 protected:
  dlgImportTest() : frame(desktop.MakeWindow("frmMDI")), async(desktop, *frame) {
    data.properties.Set("DBMS Name", std::string("SQLite"));
    data.tables.push_back({.catalog = {},
                           .schema = {},
                           .name = "goods",
                           .columns = {MemoryField("id", DataType::Integer), MemoryField("name"),
                                       MemoryField("price", DataType::Numeric)}});
    MemoryResult& goods = data.Answer("select * from goods",
                                      {MemoryField("id", DataType::Integer), MemoryField("name"),
                                       MemoryField("price", DataType::Numeric)},
                                      {});
    goods.table = "goods";
    rows = goods.rows;
    connection = data.CreateConnection();
    test::OpenNow(*connection);
  }

  /// A table for what is imported.
  std::shared_ptr<MemoryRows> MakeReceiver(const std::string& name,
                                           const std::vector<std::string>& fields) {
    MemoryResult& received = data.Answer("select * from " + name, MemoryFields(fields), {});
    received.UniqueRows(false).table = name;
    return received.rows;
  }

  HeadlessWindow& W() { return desktop.WindowOf("dlgImport"); }
  [[nodiscard]] std::string Status() { return W().Find<Label>("lblStatus").Caption(); }
  [[nodiscard]] std::string Column(int row) {
    const ListRow& column = W().Find<ListView>("lsvColumns").Row(row);
    return column.text + "|" + column.subItems[0] + "|" + column.subItems[1] + "|" +
           column.subItems[2];
  }
  void TakeClipboard(const std::string& text) {
    desktop.TheClipboard().SetText(text);
    W().Click("cmdClipboard");
    Settle();
  }
  /// Lets the dialog finish what it does.
  void Settle() {
    for (int i = 0; i < 80; ++i) {
      desktop.AdvanceTime(10);
      desktop.DrainEvents();
    }
  }
  void Import() {
    W().Click("cmdImport");
    Settle();
  }
  /// Of records that the database does not take before the dialog is left to settle.
  void BeginImport() {
    data.holdChanges = true;
    TakeClipboard("id,name,price\n1,a,1\n2,b,2\n");
    W().Click("cmdImport");
    desktop.DrainEvents();
  }
  /// Shows the dialog; `steps` are what the user does in it before he closes it.
  std::optional<ImportedTable> Go(const std::string& table, const std::function<void()>& steps) {
    desktop.OnModal("dlgImport", [steps](Window& w) {
      steps();
      dynamic_cast<HeadlessWindow&>(w).Click("cmdCancel");
    });
    dlgImport dialog(global, async);
    return dialog.Go(*frame, connection, table);
  }

  std::unique_ptr<Window> frame;
  dlgAsync async;
  std::shared_ptr<MemoryRows> rows;
  std::shared_ptr<Connection> connection;
};

TEST_F(dlgImportTest, RecordsGoIntoATableThatIsThere) {
  Go("goods", [this] {
    EXPECT_FALSE(W().Find<Button>("cmdImport").Enabled());
    TakeClipboard("Name,ID,Price,other\nnail,1,0.50,x\n\"a \"\"b\"\"\",2,,y\n");
    EXPECT_EQ(W().Find<Label>("lblKnown").Caption(), "is there");
    EXPECT_EQ(Column(0), "Name|name|Text|nail");
    EXPECT_EQ(Column(1), "ID|id|Whole number|1");
    EXPECT_EQ(Column(3), "other|(not imported)||x");
    EXPECT_EQ(W().Find<DataGrid>("grdFirst").DataSource()->RecordCount(), 2);
    Import();
    EXPECT_THAT(Status(), HasSubstr("2 records imported into goods"));
    EXPECT_FALSE(W().Find<Button>("cmdImport").Enabled());
  });
  ASSERT_EQ(rows->size(), 2U);
  EXPECT_EQ((*rows)[0], (MemoryRow{std::int64_t{1}, std::string("nail"), Decimal{"0.50"}}));
  EXPECT_EQ((*rows)[1], (MemoryRow{std::int64_t{2}, std::string("a \"b\""), Value()}));
}

TEST_F(dlgImportTest, EscEndsALongLookAndWhatWasSeenStays) {
  desktop.LetALookAtTheClockTake(5);
  Go("fresh", [this] {
    std::string text = "n\n";
    for (int i = 0; i < 100'000; ++i) text += std::to_string(i) + "\n";
    desktop.TheClipboard().SetText(text);
    W().Click("cmdClipboard");
    EXPECT_THAT(Status(), AllOf(HasSubstr("Looking at all records: "), HasSubstr(" so far.")));
    EXPECT_FALSE(W().Find<Button>("cmdImport").Enabled());
    W().PressKey(key::escape);
    const std::string seen = Status();
    EXPECT_THAT(seen, HasSubstr("Looked at the first "));
    EXPECT_EQ(Column(0), "n|n|Whole number|0");
    EXPECT_TRUE(W().Find<Button>("cmdImport").Enabled());
    Settle();
    EXPECT_EQ(Status(), seen);
    EXPECT_TRUE(W().Visible());
  });
}

TEST_F(dlgImportTest, ANewTableIsMadeWithTheTypesThatWereGuessed) {
  const auto received = MakeReceiver("fresh", {"id", "day", "cost"});
  const auto made = Go("fresh", [this] {
    TakeClipboard("id\tday\tprice\n1\t2026-01-02\t1.5\n7\t2026-01-03\t12\n");
    EXPECT_EQ(W().Find<Label>("lblKnown").Caption(), "will be made");
    EXPECT_EQ(W().Find<ComboBox>("cboDelimiter").Text(), "Tab");
    EXPECT_EQ(Column(0), "id|id|Whole number|1");
    EXPECT_EQ(Column(1), "day|day|Date|2026-01-02");
    EXPECT_EQ(Column(2), "price|price|Exact number (3,1)|1.5");
    W().SelectRow("lsvColumns", 2);
    W().Find<ComboBox>("cboName").SetText("cost");
    W().SelectRow("lsvColumns", 0);
    W().SelectItem("cboType", 0);
    EXPECT_EQ(Column(0), "id|id|Text|1");
    Import();
    EXPECT_THAT(Status(), HasSubstr("2 records imported into fresh"));
  });
  EXPECT_THAT(data.created, ElementsAre("fresh (id text, day date, cost numeric(3,1))"));
  ASSERT_EQ(received->size(), 2U);
  EXPECT_EQ((*received)[1][0], Value(std::string("7")));
  ASSERT_TRUE(made);
  EXPECT_EQ(made->listed, "fresh");
  EXPECT_THAT(made->columns, ElementsAre("id", "day", "cost"));
}

TEST_F(dlgImportTest, ARecordThatIsRefusedIsToldAndNothingStays) {
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n2,b,2\n1,again,3\n");
    Import();
    EXPECT_EQ(Status(), "Line 4: UNIQUE constraint failed: id\nNothing was imported.");
    EXPECT_TRUE(W().Find<Button>("cmdImport").Enabled());
  });
  EXPECT_TRUE(rows->empty());
}

TEST_F(dlgImportTest, AValueThatIsNoneIsToldWithItsPlace) {
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n2,b,cheap\n");
    Import();
    EXPECT_EQ(Status(), "Line 3, column \"price\": \"cheap\" is no number.\nNothing was imported.");
  });
  EXPECT_TRUE(rows->empty());
}

TEST_F(dlgImportTest, CancelStopsALoadAndTheWindowStays) {
  Go("goods", [this] {
    BeginImport();
    EXPECT_FALSE(W().Find<Button>("cmdImport").Enabled());
    W().CloseByControlBox();
    EXPECT_TRUE(W().Visible());
    Settle();
    EXPECT_EQ(Status(), "Cancelled.\nNothing was imported.");
  });
  EXPECT_TRUE(rows->empty());
}

TEST_F(dlgImportTest, WhileWhatItTookIsTakenBackThatIsSaid) {
  Go("goods", [this] {
    BeginImport();
    W().Click("cmdCancel");
    EXPECT_EQ(Status(), "Cancelling: the database takes back what it took.\n"
                        "Cancel again to disconnect and leave it alone with that.");
    Settle();
    EXPECT_EQ(Status(), "Cancelled.\nNothing was imported.");
  });
}

TEST_F(dlgImportTest, ALostConnectionAndWhatItLeavesAreTold) {
  data.properties.Set("DBMS Name", std::string("MariaDB"));
  const auto there = data.CreateConnection();
  test::OpenNow(*there);
  connection = there;
  Go("fresh", [this] {
    TakeClipboard("id\n1\n");
    data.LoseSessions();
    Import();
    EXPECT_THAT(Status(), HasSubstr("\nNothing was imported. The connection is closed; the table "
                                    "was made, and may still be there."));
  });
}

/// What is typed so far may be the name of another table.
TEST_F(dlgImportTest, TheColumnsOfATableAreReadWhenItsNameIsTyped) {
  Go("", [this] {
    TakeClipboard("id,name,price\n1,a,1\n");
    auto& table = W().Find<ComboBox>("cboTable");
    for (const char* typed : {"g", "go", "goo", "good", "goods"}) table.SetText(typed);
    EXPECT_FALSE(W().Find<Button>("cmdImport").Enabled());
    EXPECT_EQ(W().Find<Label>("lblKnown").Caption(), "will be made");
    table.SetText("goods2");
    EXPECT_TRUE(W().Find<Button>("cmdImport").Enabled());
    Settle();
    EXPECT_EQ(W().Find<Label>("lblKnown").Caption(), "will be made");
    table.SetText("goods");
    Settle();
    EXPECT_EQ(W().Find<Label>("lblKnown").Caption(), "is there");
    EXPECT_TRUE(W().Find<Button>("cmdImport").Enabled());
  });
}

/// PostgreSQL would take them, and forget the offset and the time.
TEST_F(dlgImportTest, WhatAColumnWouldLoseOfAMomentIsRefused) {
  data.properties.Set("DBMS Name", std::string("PostgreSQL"));
  FieldInfo plain = MemoryField("plain", DataType::DBTimeStamp);
  plain.typeName = "timestamp without time zone";
  FieldInfo zoned = MemoryField("zoned", DataType::DBTimeStamp);
  zoned.typeName = "timestamp with time zone";
  FieldInfo day = MemoryField("day", DataType::DBDate);
  day.typeName = "date";
  data.tables.push_back({.catalog = {}, .schema = {}, .name = "m", .columns = {plain, zoned, day}});
  connection = data.CreateConnection();
  test::OpenNow(*connection);
  const auto received = MakeReceiver("m", {"plain", "zoned", "day"});
  Go("m", [this] {
    TakeClipboard("zoned,plain\n2026-01-02 03:04:05-05,2026-01-02 03:04:05-05\n");
    Import();
    EXPECT_THAT(Status(), HasSubstr("Line 2, column \"plain\": \"2026-01-02 03:04:05-05\" has an "
                                    "offset from UTC, which the column would lose."));
    TakeClipboard("day\n2026-01-02 03:04\n");
    Import();
    EXPECT_THAT(Status(), HasSubstr("has a time of day, which the column would lose."));
    TakeClipboard("zoned,plain,day\n2026-01-02T03:04:05Z,2026-01-02T03:04:05.5 PM,2026-01-02\n");
    Import();
    EXPECT_THAT(Status(), HasSubstr("1 record imported into m"));
  });
}

TEST_F(dlgImportTest, AfterAnImportOnlyAnotherSourceIsTaken) {
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n");
    Import();
    EXPECT_FALSE(W().Find<ComboBox>("cboTable").Enabled());
    EXPECT_TRUE(W().Find<Button>("cmdClipboard").Enabled());
    TakeClipboard("id,name,price\n2,b,1\n");
    EXPECT_TRUE(W().Find<ComboBox>("cboTable").Enabled());
    EXPECT_TRUE(W().Find<Button>("cmdImport").Enabled());
  });
}

TEST_F(dlgImportTest, WhatIsNoTextLeavesTheSourceAsItWas) {
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n");
    TakeClipboard("PK\x03\x04 and more");
    EXPECT_THAT(Status(), HasSubstr("This is no text: the clipboard is a ZIP archive"));
    EXPECT_EQ(Column(0), "id|id|Whole number|1");
    TakeClipboard("");
    EXPECT_EQ(Status(), "There is nothing in the clipboard.");
  });
}

TEST_F(dlgImportTest, AFileThatIsNoTextIsToldWhateverItsName) {
  const std::vector<std::pair<std::string, std::string>> files = {
      {"\x89PNG\r\n\x1A\n", "a picture (PNG)"},
      {"\xFF\xD8\xFF\xE0", "a picture (JPEG)"},
      {"GIF89a", "a picture (GIF)"},
      {"\x1F\x8B\x08", "packed by gzip"},
      {std::string("SQLite format 3\0more", 20), "a database of SQLite"}};
  Go("goods", [&] {
    for (const auto& [bytes, kind] : files) {
      W().Find<TextBox>("txtSource").SetText("");
      W().Type("txtSource", folder.Write("goods.csv", bytes));
      W().PressKey(key::enter);
      EXPECT_EQ(Status(), "This is no text: " + folder.File("goods.csv") + " is " + kind +
                              ". Save it as CSV in the program that it comes from, and import "
                              "that.");
    }
    EXPECT_FALSE(W().Find<Button>("cmdImport").Enabled());
  });
}

TEST_F(dlgImportTest, ATextInUtf16IsReadWithAMarkAndWithout) {
  const auto utf16 = [](const std::string& text) {
    std::string bytes;
    for (const char c : text) bytes += {c, '\0'};
    return bytes;
  };
  Go("goods", [&] {
    for (const char* mark : {"", "\xFF\xFE"}) {
      TakeClipboard(mark + utf16("id,name\n7,nail\n"));
      EXPECT_EQ(W().Find<ComboBox>("cboEncoding").Text(), "UTF-16, little endian");
      EXPECT_EQ(Column(1), "name|name|Text|nail");
    }
    Import();
  });
  ASSERT_EQ(rows->size(), 1U);
  EXPECT_EQ((*rows)[0][1], Value(std::string("nail")));
}

/// A file that is there no more, or another one by now, is told when it is read again.
TEST_F(dlgImportTest, AFileThatGoesAwayBeforeTheImportIsTold) {
  Go("goods", [this] {
    W().Type("txtSource", folder.Write("goods.csv", "id,name\n1,nail\n"));
    W().PressKey(key::enter);
    Settle();
    files.Remove(folder.File("goods.csv"));
    Import();
    EXPECT_THAT(Status(), HasSubstr("No such file"));
    folder.Write("goods.csv", "id,name,more\n1,nail,x\n");
    Import();
    EXPECT_THAT(Status(), HasSubstr("3 values for 2 columns"));
  });
  EXPECT_TRUE(rows->empty());
}

TEST_F(dlgImportTest, AFileWhoseColumnsChangePlacesBeforeTheImportIsTold) {
  Go("goods", [this] {
    W().Type("txtSource", folder.Write("goods.csv", "id,name\n1,5\n"));
    W().PressKey(key::enter);
    Settle();
    folder.Write("goods.csv", "name,id\n1,5\n");
    Import();
    EXPECT_THAT(Status(), HasSubstr("other names than when the file was looked at"));
    EXPECT_THAT(Status(), HasSubstr("Nothing was imported."));
  });
  EXPECT_TRUE(rows->empty());
}

TEST_F(dlgImportTest, TheFormatIsTheUsersToChange) {
  Go("goods", [this] {
    TakeClipboard("1;a,b;2\n");
    EXPECT_EQ(W().Find<ComboBox>("cboDelimiter").Text(), "Semicolon");
    EXPECT_FALSE(W().Find<CheckBox>("chkHeader").Value());
    EXPECT_EQ(Column(1), "column_2|name|Text|a,b");
    W().SelectItem("cboDelimiter", 0);
    Settle();
    EXPECT_EQ(Column(0), "column_1|id|Whole number|1;a");
    W().Click("chkHeader");
    Settle();
    EXPECT_EQ(Column(0), "1;a|(not imported)||");
  });
}

TEST_F(dlgImportTest, ABrokenRecordIsToldWhenTheSourceIsLookedAt) {
  Go("fresh", [this] {
    TakeClipboard("a,b\n1,2\n3\n");
    EXPECT_EQ(Status(), "Line 3: this record has 1 values, and the first 2.");
    EXPECT_EQ(Column(0), "a|a|Whole number|1");
  });
}

TEST_F(dlgImportTest, TwoColumnsCannotGoToOne) {
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n");
    W().SelectRow("lsvColumns", 1);
    W().SelectItem("cboName", 1);
    W().Click("cmdImport");
    EXPECT_EQ(Status(), "Two columns go to \"id\".");
  });
  EXPECT_TRUE(rows->empty());
}

TEST_F(dlgImportTest, AFileIsOpenedAndNamesTheTable) {
  files.ReplaceWhole(folder.File("Fresh goods.csv"), "id,name\n1,nail\n", false);
  Go("", [this] {
    desktop.AnswerFile(folder.File("Fresh goods.csv"));
    W().Click("cmdFile");
    Settle();
    EXPECT_EQ(W().Find<ComboBox>("cboTable").Text(), "fresh_goods");
    EXPECT_THAT(Status(), HasSubstr("1 record in "));
  });
}

/// SQLite keeps 64 bits in every column of whole numbers.
TEST_F(dlgImportTest, SqliteTakesLongNumbersWhateverTheTypeIsSaidToBe) {
  Go("goods", [this] {
    TakeClipboard("id,name\n-9223372036854775808,least\n");
    Import();
    EXPECT_THAT(Status(), HasSubstr("1 record imported into goods"));
  });
  ASSERT_EQ(rows->size(), 1U);
  EXPECT_EQ((*rows)[0][0], Value(std::numeric_limits<std::int64_t>::min()));
}

TEST_F(dlgImportTest, APathThatIsTypedIsTakenByEnter) {
  files.ReplaceWhole(folder.File("goods.csv"), "id,name\n1,nail\n", false);
  Go("goods", [this] {
    W().Type("txtSource", folder.File("goods.csv"));
    EXPECT_EQ(W().Find<ListView>("lsvColumns").Count(), 0);
    W().PressKey(key::enter);
    Settle();
    EXPECT_EQ(Column(1), "name|name|Text|nail");
    EXPECT_TRUE(rows->empty());
    W().PressKey(key::enter);  // Now the default button has it.
    Settle();
    EXPECT_THAT(Status(), HasSubstr("1 record imported into goods"));
  });
  EXPECT_EQ(rows->size(), 1U);
}

TEST_F(dlgImportTest, APathThatIsTypedIsTakenWhenTheBoxIsLeft) {
  files.ReplaceWhole(folder.File("goods.csv"), "id,name\n1,nail\n", false);
  Go("goods", [this] {
    W().Type("txtSource", folder.File("goods.csv"));
    W().PressKey(key::tab);
    Settle();
    EXPECT_EQ(Column(1), "name|name|Text|nail");
  });
}

TEST_F(dlgImportTest, AnUnknownPathIsToldAndNothingElseIsImported) {
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n");
    W().Find<TextBox>("txtSource").SetText("");
    W().Type("txtSource", folder.File("none.csv"));
    W().PressKey(key::enter);
    Settle();
    EXPECT_THAT(Status(), HasSubstr("none.csv"));
    EXPECT_THAT(Status(), HasSubstr("No such file"));
    EXPECT_EQ(W().Find<TextBox>("txtSource").Text(), folder.File("none.csv"));
    EXPECT_EQ(Column(0), "id|id|Whole number|1");
    Import();
    EXPECT_TRUE(rows->empty());
    W().Find<TextBox>("txtSource").SetText("the clipboard");
    Import();
    EXPECT_THAT(Status(), HasSubstr("1 record imported into goods"));
  });
}

TEST_F(dlgImportTest, AReadOnlyConnectionRefuses) {
  connection->Close();
  data.properties.Set("Mode", std::string("ReadOnly"));
  test::OpenNow(*connection);
  Go("goods", [this] {
    TakeClipboard("id,name,price\n1,a,1\n");
    W().Click("cmdImport");
    EXPECT_THAT(Status(), HasSubstr("Mode=ReadOnly"));
  });
}

}  // namespace
}  // namespace tessel
