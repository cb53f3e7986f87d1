// Rows on their way to a file, in the program as it runs: with a thread for the work, by keys.

#include "contract/desktop/controls/ListControls.h"
#include "tests/desktop/program/ProgramFixture.h"

namespace tessel::test {
namespace {

class ExportJobTest : public ProgramFixture {
 protected:
  /// Chooses the command by its key and exports to that file.
  void Export(int format, const std::string& path) {
    host.OnModal("dlgExport", [&, format](Window& w) {
      w.Find<ComboBox>("cboFormat").SetListIndex(format);
      w.Find<TextBox>("txtFile").SetText(path);
      host.Click(w, "cmdOK");
    });
    program.Frame().RecordsWindows().at(0)->FocusRecords();
    host.PressKey(Records(0), 'E', shiftState::ctrl | shiftState::shift);
    WaitForKeyboard();
  }
};

TEST_F(ExportJobTest, RowsGoToAFileByTheKeyOfTheRecordsWindow) {
  Start();
  Run("select 1 as a, 'x,y' as b union all select 2, null");
  Export(0, folder.File("out.csv"));
  EXPECT_EQ(files.ReadWhole(folder.File("out.csv")), "a,b\r\n1,\"x,y\"\r\n2,\r\n");
  EXPECT_EQ(Status(0), "2 records exported to " + folder.File("out.csv") + ".");
}

TEST_F(ExportJobTest, AHundredThousandRowsComeWholeAndInOrder) {
  Start();
  Run("with recursive n(i) as (select 1 union all select i + 1 from n where i < 100000) "
      "select i, 'text ' || i as t, i / 4.0 as f from n");
  Export(3, folder.File("out.jsonl"));
  const std::string text = files.ReadWhole(folder.File("out.jsonl"));
  std::string expected;
  for (int i = 1; i <= 100'000; ++i) {
    std::string number;
    AppendText(i / 4.0, number);
    expected += "{\"i\":" + std::to_string(i) + ",\"t\":\"text " + std::to_string(i) +
                "\",\"f\":" + number + "}\n";
  }
  EXPECT_TRUE(text == expected) << text.size() << " bytes, not " << expected.size();
}

}  // namespace
}  // namespace tessel::test
