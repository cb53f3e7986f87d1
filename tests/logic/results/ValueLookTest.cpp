// The value of the current cell beside the rows and in a window of its own.

#include <algorithm>

#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/values/HexBox.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "tests/logic/results/EditingFixture.h"

namespace tessel {
namespace {

using namespace std::string_literals;
using test::HeadlessWindow;

Bytes AsValue(const std::string& content) {
  Bytes bytes(content.size());
  std::transform(content.begin(), content.end(), bytes.begin(),
                 [](char character) { return static_cast<std::byte>(character); });
  return bytes;
}

/// A PNG of that size, as far as its head and its end go.
std::string Png(int width, int height) {
  const auto number = [](int value) {
    return std::string{static_cast<char>(value >> 24), static_cast<char>(value >> 16),
                       static_cast<char>(value >> 8), static_cast<char>(value)};
  };
  return "\x89PNG\r\n\x1a\n\0\0\0\rIHDR"s + number(width) + number(height) +
         "\0\0\0\0IEND\xAE\x42\x60\x82"s;
}

class ValueLookTest : public test::EditingFixture {
 protected:
  ValueLookTest() { EXPECT_TRUE(Connect()); }

  /// One row of these values, in columns "a", "b" and so on.
  void RunValues(std::vector<Value> values) {
    std::vector<FieldInfo> fields;
    for (const Value& value : values) {
      const bool bytes = std::holds_alternative<Bytes>(value);
      const std::string name(1, static_cast<char>('a' + fields.size()));
      fields.push_back(MemoryField(name, bytes ? DataType::LongVarBinary : DataType::LongVarWChar));
    }
    data.Answer("values", fields, {std::move(values)});
    ASSERT_TRUE(Run("values"));
  }
  void OpenPane() { Press('V', shiftState::ctrl | shiftState::shift); }
  [[nodiscard]] HexBox& Hex(Window& window) { return window.Find<HexBox>("hexValue"); }
  [[nodiscard]] HexBox& Hex() { return Hex(W()); }
  [[nodiscard]] std::string Said() { return W().Find<Label>("lblValue").Caption(); }
  [[nodiscard]] std::string ShownText() { return W().Find<EditorBox>("txtValue").Text(); }
  /// What of the three shows the value.
  [[nodiscard]] std::string ShowsIn() {
    std::string shown;
    for (const char* name : {"hexValue", "imgValue", "txtValue"})
      if (Shows(name)) shown += name;
    return shown;
  }
  void Choose(int look) { W().Find<ComboBox>("cboValueAs").SetListIndex(look); }
  void Answer(const std::string& text) {
    desktop.OnModal("dlgText", [text](HeadlessWindow& w) {
      w.Find<TextBox>("txtText").SetText(text);
      w.Click("cmdOK");
    });
  }
};

TEST_F(ValueLookTest, ThePaneComesBesideTheRowsAndGoesAgain) {
  RunRows();
  const Rect before = Grid().Bounds();
  EXPECT_FALSE(Shows("fraValue"));
  OpenPane();
  EXPECT_TRUE(Shows("fraSide"));
  EXPECT_EQ(W().FocusName(), "txtValue");
  EXPECT_LT(Grid().Bounds().width, before.width);
  const Rect side = W().Find<Control>("fraSide").Bounds();
  EXPECT_EQ(Grid().Bounds().left + Grid().Bounds().width, side.left) << "no gap, no overlap";
  EXPECT_EQ(side.left + side.width, before.left + before.width);
  Press(key::escape);
  EXPECT_EQ(W().FocusName(), "DataGrid");
  OpenPane();
  EXPECT_EQ(W().FocusName(), "txtValue") << "the key goes there first";
  OpenPane();
  EXPECT_FALSE(Shows("fraSide"));
  EXPECT_EQ(Grid().Bounds().width, before.width);
  EXPECT_EQ(W().FocusName(), "DataGrid");
}

TEST_F(ValueLookTest, ThePaneFollowsTheCurrentCell) {
  RunRows();
  OpenPane();
  EXPECT_EQ(Said(), "id: Value");
  EXPECT_EQ(ShownText(), "1");
  ClickCell(0, name);
  EXPECT_EQ(Said(), "name: Text, 3 bytes");
  EXPECT_EQ(ShownText(), "one");
  ClickCell(0, picture);
  EXPECT_EQ(ShowsIn(), "hexValue");
  EXPECT_EQ(Said(), "picture: Binary, 2048 bytes; byte 0 (0x0)");
  EXPECT_EQ(Hex().LineText(0),
            "00000000  07 07 07 07 07 07 07 07 07 07 07 07 07 07 07 07  ................");
  ClickCell(1, picture);
  EXPECT_EQ(Said(), "picture: NULL");
  EXPECT_EQ(ShownText(), "");
}

TEST_F(ValueLookTest, AChangedValueIsShownAtOnce) {
  RunUnlocked();
  ClickCell(0, name);
  OpenPane();
  Press(key::escape);
  Type("other");
  Press(key::tab);
  ClickCell(0, name);
  EXPECT_EQ(ShownText(), "other");
  Press('R', shiftState::ctrl);
  EXPECT_EQ(ShownText(), "one");
}

TEST_F(ValueLookTest, NothingIsKeptOfRowsThatAreGone) {
  RunValues({Value(AsValue("bytes"))});
  const std::weak_ptr<Recordset> rows = Grid().DataSource();
  OpenPane();
  EXPECT_EQ(Hex().Size(), 5);
  data.AnswerNothing("none");
  ASSERT_TRUE(Run("none"));
  EXPECT_EQ(Hex().Size(), 0);
  EXPECT_FALSE(Shows("fraSide"));
  EXPECT_TRUE(rows.expired());
}

TEST_F(ValueLookTest, APictureIsShownWithItsSize) {
  RunValues({Value(AsValue(Png(640, 480))), Value(AsValue(Png(100'000, 100'000))),
             Value(AsValue(Png(4, 4).substr(0, 40)))});
  OpenPane();
  EXPECT_EQ(ShowsIn(), "imgValue");
  EXPECT_EQ(Said(), "a: PNG picture, 36 bytes; PNG, 640 x 480 pixels");
  ClickCell(0, 1);
  EXPECT_EQ(Said(), "b: PNG picture, 36 bytes; This picture of 100000 x 100000 pixels is too large "
                    "to be shown.");
  RunValues({Value(AsValue(Png(4, 4).substr(0, 30)))});
  EXPECT_EQ(Said(), "a: PNG picture, 30 bytes; The picture is broken: its end is missing.");
}

TEST_F(ValueLookTest, TheUserChoosesHowItIsShown) {
  RunValues({Value(AsValue("{\"a\":1}")), Value("plain"s)});
  OpenPane();
  EXPECT_EQ(ShowsIn(), "hexValue");
  Choose(1);
  EXPECT_EQ(ShownText(), "{\"a\":1}");
  Choose(2);
  EXPECT_EQ(ShownText(), "{\n  \"a\": 1\n}");
  EXPECT_EQ(W().Find<EditorBox>("txtValue").Syntax(), TextSyntax::Json);
  Choose(4);
  EXPECT_EQ(Said(), "a: Binary, 7 bytes; The bytes are no picture that can be shown here.");
  ClickCell(0, 1);
  Choose(3);
  EXPECT_EQ(Hex().LineText(0).substr(0, 24), "00000000  70 6C 61 69 6E");
  Choose(2);
  EXPECT_EQ(ShownText(), "plain");
  EXPECT_EQ(Said(), "b: Text, 5 bytes; neither JSON nor XML");
}

TEST_F(ValueLookTest, JsonAndXmlAreIndentedAndBrokenOnesTellThePlace) {
  RunValues({Value("[1,2]"s), Value("<a><b/></a>"s), Value("{\"a\" 1}"s)});
  OpenPane();
  EXPECT_EQ(Said(), "a: JSON text, 5 bytes");
  EXPECT_EQ(ShownText(), "[\n  1,\n  2\n]");
  ClickCell(0, 1);
  EXPECT_EQ(ShownText(), "<a>\n  <b/>\n</a>");
  EXPECT_EQ(W().Find<EditorBox>("txtValue").Syntax(), TextSyntax::Xml);
  ClickCell(0, 2);
  EXPECT_EQ(ShownText(), "{\"a\" 1}");
  EXPECT_EQ(Said(), "c: JSON text, 7 bytes; no JSON at line 1, column 6: a colon is missing");
}

TEST_F(ValueLookTest, ALongTextIsIndentedInSlices) {
  const std::string blanks(300'000, ' ');
  RunValues({"[" + blanks + "1]", "[" + blanks + "2,]", std::string("plain")});
  OpenPane();
  EXPECT_EQ(ShownText(), "") << "the window is not held up";
  EXPECT_EQ(Said(), "a: JSON text, 300003 bytes; indenting");
  desktop.AdvanceTime(10);
  EXPECT_EQ(ShownText(), "[\n  1\n]");
  EXPECT_EQ(Said(), "a: JSON text, 300003 bytes");
  ClickCell(0, 1);
  desktop.AdvanceTime(10);
  EXPECT_EQ(ShownText(), "[" + blanks + "2,]");
  EXPECT_NE(Said().find("; no JSON at line 1, column 300004"), std::string::npos) << Said();
}

TEST_F(ValueLookTest, IndentingEndsWithItsValue) {
  RunValues({"[" + std::string(300'000, ' ') + "1]", std::string("plain")});
  OpenPane();
  ClickCell(0, 1);
  EXPECT_EQ(ShownText(), "plain");
  desktop.AdvanceTime(100);
  EXPECT_EQ(ShownText(), "plain");
  ClickCell(0, 0);
  EXPECT_EQ(ShownText(), "");
}

TEST_F(ValueLookTest, OfALongTextTheBeginningIsShown) {
  RunValues({Value(std::string(1'048'575, 'x') + "\xC3\xA9 and more")});
  OpenPane();
  EXPECT_EQ(ShownText(), std::string(1'048'575, 'x')) << "no half character";
  EXPECT_EQ(Said(), "a: Text, 1048586 bytes; the first 1048575 bytes are shown");
}

// --- in the bytes --------------------------------------------------------------------------------

TEST_F(ValueLookTest, BytesAreFoundFromTheCurrentOneOn) {
  std::string content(10'000'000, '\0');
  content.replace(9'000'000, 2, "PK");
  content.replace(100, 2, "PK");
  RunValues({Value(AsValue(content))});
  OpenPane();
  Answer("50 4B");
  Press('F', shiftState::ctrl);
  EXPECT_EQ(Hex().SelStart(), 100);
  EXPECT_EQ(Hex().SelLength(), 2);
  EXPECT_EQ(Said(), "a: Binary, 10000000 bytes; byte 101 (0x65), 2 bytes selected");
  Press(key::f3);
  EXPECT_EQ(Hex().SelStart(), 100) << "the search goes on";
  EXPECT_NE(Said().find("Searching..."), std::string::npos) << Said();
  desktop.AdvanceTime(100);
  EXPECT_EQ(Hex().SelStart(), 9'000'000);
  Press(key::f3);
  desktop.AdvanceTime(100);
  EXPECT_EQ(Hex().SelStart(), 100) << "and begins anew at the end";
  Answer("\"nowhere\"");
  Press('F', shiftState::ctrl);
  desktop.AdvanceTime(100);
  EXPECT_NE(Said().find("Not found"), std::string::npos) << Said();
}

TEST_F(ValueLookTest, ASearchIsStoppedByEscAndByAnotherCell) {
  RunValues({Value(AsValue(std::string(9'000'000, '\1'))), Value(AsValue("ab"))});
  OpenPane();
  Answer("PK");
  Press('F', shiftState::ctrl);
  Press(key::escape);
  EXPECT_NE(Said().find("Search stopped"), std::string::npos) << Said();
  EXPECT_EQ(W().FocusName(), "hexValue");
  Press(key::f3);
  ClickCell(0, 1);
  desktop.AdvanceTime(1000);
  EXPECT_EQ(Said(), "b: Binary, 2 bytes; byte 0 (0x0)");
}

TEST_F(ValueLookTest, AnOffsetIsGoneTo) {
  RunRows();
  ClickCell(0, picture);
  OpenPane();
  Answer("0x10");
  Press('G', shiftState::ctrl);
  EXPECT_EQ(Hex().Caret(), 16);
  Answer("2048");
  ExpectNotice("There is no byte '2048': they are 0 to 2047.");
  Press('G', shiftState::ctrl);
  EXPECT_EQ(Hex().Caret(), 16);
}

TEST_F(ValueLookTest, SelectedBytesAreCopiedAsDigits) {
  RunRows();
  ClickCell(0, picture);
  OpenPane();
  Press(key::right, shiftState::shift);
  Press('C', shiftState::ctrl);
  EXPECT_EQ(desktop.TheClipboard().Text(), "07 07");
}

// --- by F3 ---------------------------------------------------------------------------------------

TEST_F(ValueLookTest, F3OnBytesShowsThemInAWindow) {
  RunRows();
  ClickCell(0, picture);
  const std::string path = folder.File("value.bin");
  desktop.OnModal("frmValue", [&](HeadlessWindow& w) {
    EXPECT_TRUE(w.Caption().ends_with("picture, row 1")) << w.Caption();
    EXPECT_EQ(Hex(w).Size(), 2048);
    EXPECT_EQ(w.FocusName(), "hexValue");
    desktop.AnswerFile(path);
    w.PressKey('S', shiftState::ctrl);
    w.PressKey(key::escape);
  });
  Press(key::f3);
  EXPECT_EQ(Content("value.bin"), std::string(2048, '\7'));
  desktop.OnModal("frmText", [](HeadlessWindow& w) { w.PressKey(key::escape); });
  ClickCell(1, picture);
  Press(key::f3);
}

}  // namespace
}  // namespace tessel
