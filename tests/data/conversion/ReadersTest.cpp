// The texts of the conversions, read back by programs that know their formats.

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "tests/data/conversion/HardValues.h"
#include "tests/data/conversion/ProgramTest.h"
#include "tests/data/servers/Process.h"
#include "tests/data/support/DataTest.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

namespace {

using Names = std::vector<std::string>;

std::string Hex(std::string_view text) {
  std::string hex;
  for (const char c : text) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", static_cast<unsigned char>(c));
    hex += digits;
  }
  return hex.empty() ? "-" : hex;
}

/// How a value shows in the formats that have no types.
std::string Shown(const Value& value) {
  if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "1" : "0";
  return ToText(ToView(value));
}

/// One row a value: its name and itself.
std::shared_ptr<Recordset> Named(const std::vector<HardValue>& values) {
  std::vector<std::vector<Value>> rows;
  rows.reserve(values.size());
  for (const HardValue& hard : values) rows.push_back({Value(hard.name), hard.value});
  return RecordsetOf(rows);
}
class ReadersTest : public ProgramTest<testing::Test> {
 protected:
  std::string Write(const std::string& name, const std::string& text) {
    std::ofstream(folder_.File(name), std::ios::binary) << text;
    return folder_.File(name);
  }
  static std::string Expected(const std::vector<HardValue>& values) {
    std::string lines = Hex("c1") + " " + Hex("c2") + "\n";
    for (const HardValue& hard : values)
      lines += Hex(hard.name) + " " + Hex(Shown(hard.value)) + "\n";
    return lines;
  }
};

/// Null reads as an empty text: the format has no other word for it. Binary values read as the text
/// they were turned into.
TEST_F(ReadersTest, QuotedCsvReadsBackInPython) {
  const auto values = HardValues();
  const std::string file = Write("a.csv", Converted(*Named(values), "mnuCvtQuotedCSV"));
  EXPECT_EQ(Output({"python3", Script("read_csv.py"), file, ","}), Expected(values));
  RecordProperty("values", static_cast<int>(values.size()));
}

TEST_F(ReadersTest, PlainCsvReadsBackWhereNoValueHoldsAMarkOfTheFormat) {
  const auto values =
      HardValuesWithout({"double quote alone", "commas and semicolons", "line breaks", "umlauts",
                         "ends with a line break", "control characters", "every byte"});
  const std::string file = Write("a.csv", Converted(*Named(values), "mnuCvtCSV"));
  EXPECT_EQ(Output({"python3", Script("read_csv.py"), file, ","}), Expected(values));
}

/// As a page in which the table stands; the validator finds nothing to complain of.
TEST_F(ReadersTest, HtmlIsValidAndShowsTheValues) {
  // The reference of a control character has hexadecimal digits in decimal form: &#1F;.
  const auto values =
      HardValuesWithout({"control characters", "NUL inside", "every byte",
                         "control character before a hexadecimal digit", "tab", "line breaks"});
  const std::string table = Converted(*Named(values), "mnuCvtHTMLTable");
  const std::string page =
      "<!DOCTYPE html>\n<html><head><title>Rows</title></head><body>" + table + "</body></html>\n";
  const std::string file = Write("a.html", page);
  EXPECT_EQ(Output({"tidy", "-quiet", "-errors", "-utf8", file}), "");
  EXPECT_EQ(Output({"python3", Script("read_html.py"), file}), Expected(values));
  RecordProperty("values", static_cast<int>(values.size()));
}

/// Values that are no constants of C, with the reason.
const Names noConstants = {
    "control character before a hexadecimal digit",  // \x takes every digit that follows.
    "trigraph",                                      // A backslash in standard C.
    "NUL inside",                                    // A string ends at its first NUL.
    "every byte",                                    // Holds NUL, and what is no UTF-8.
    "least whole number",                            // Its digits alone are out of range.
    "infinity",
    "no number",    // Numbers without digits.
    "null number",  // NULL is a pointer.
};

std::string CType(ValueKind kind) {
  switch (kind) {
    case ValueKind::Whole:
    case ValueKind::Flag: return "long long";
    case ValueKind::Floating:
    case ValueKind::Exact: return "double";
    default: return "const char *";
  }
}

/// A program that holds one array a value and prints the texts in hexadecimal.
std::string ArraysProgram(const std::vector<HardValue>& values) {
  std::string declarations = "#include <stdio.h>\n";
  std::string body;
  for (std::size_t i = 0; i < values.size(); ++i) {
    const std::string array = "a" + std::to_string(i);
    const std::string type = CType(values[i].kind);
    declarations += "static const struct { const char *name; " + type + " value; } " + array +
                    "[] = " + Converted(*Named({values[i]}), "mnuCvtArrayC") + ";\n";
    body += "  hex(" + array + "[0].name); ";
    if (type == "const char *") body += "hex(" + array + "[0].value);";
    else
      body += "printf(\"" + std::string(type == "double" ? "%.17g" : "%lld") + "\", " + array +
              "[0].value);";
    body += " putchar('\\n');\n";
  }
  return declarations +
         "static void hex(const char *text) {\n  if (!text) { printf(\"null \"); return; }\n"
         "  for (; *text; ++text) printf(\"%02x\", (unsigned char)*text);\n  putchar(' ');\n}\n"
         "int main(void) {\n" +
         body + "  return 0;\n}\n";
}

std::string ExpectedOfC(const std::vector<HardValue>& values) {
  std::string lines;
  for (const HardValue& hard : values) {
    lines += Hex(hard.name) + " ";
    const std::string type = CType(hard.kind);
    char number[64];
    const std::string shown = Shown(hard.value);
    if (type == "double")
      std::snprintf(number, sizeof number, "%.17g", std::strtod(shown.c_str(), nullptr));
    if (IsNull(ToView(hard.value))) lines += "null ";
    else if (type == "double") lines += number;
    else if (type == "long long") lines += shown;
    else if (!shown.empty()) lines += Hex(shown) + " ";
    else lines += " ";
    lines += "\n";
  }
  return lines;
}

TEST_F(ReadersTest, ArraysCompileInCWithoutAWarningAndHoldTheValues) {
  const auto values = HardValuesWithout(noConstants);
  const std::string source = Write("a.c", ArraysProgram(values));
  const std::string program = folder_.File("a.out");
  ASSERT_EQ(Output({"gcc", "-std=c11", "-Wall", "-Werror", "-o", program, source}), "");
  EXPECT_EQ(Output({program}), ExpectedOfC(values));
  RecordProperty("values", static_cast<int>(values.size()));
}

TEST_F(ReadersTest, AnArrayOfOneColumnIsAnInitialiserOfPlainValues) {
  const auto rows = RecordsetOf({{Value(std::int64_t{1})}, {Value(std::int64_t{-2})}});
  const std::string source = Write(
      "b.c", "static const int v[] = " + Converted(*rows, "mnuCvtArrayC") +
                 ";\nint main(void) { return sizeof v / sizeof v[0] == 2 && v[0] == 1 && v[1] "
                 "== -2 ? 0 : 1; }\n");
  const std::string program = folder_.File("b.out");
  ASSERT_EQ(Output({"gcc", "-std=c11", "-Wall", "-Werror", "-o", program, source}), "");
  EXPECT_EQ(Output({program}), "");
}

/// The exceptions above are real: each of them alone is refused or changed.
TEST_F(ReadersTest, WhatIsNoConstantOfCIsRefusedOrChanged) {
  for (const HardValue& hard : HardValues()) {
    if (std::ranges::find(noConstants, hard.name) == noConstants.end()) continue;
    const std::string source = Write("c.c", ArraysProgram({hard}));
    const std::string program = folder_.File("c.out");
    Process compiler({"gcc", "-std=c11", "-Wall", "-Werror", "-o", program, source});
    if (compiler.Wait(std::chrono::minutes(1)) != 0) continue;
    EXPECT_NE(Output({program}), ExpectedOfC({hard})) << hard.name;
  }
}

}  // namespace

}  // namespace tessel::test
