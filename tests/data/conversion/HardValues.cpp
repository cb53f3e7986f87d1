#include "tests/data/conversion/HardValues.h"
#include "tests/support/DataSteps.h"

#include <algorithm>
#include <limits>

#include "logic/results/conversions/Conversions.h"
#include "tests/data/support/PumpQueue.h"
#include "tests/data/support/Values.h"
#include "tests/support/MemoryData.h"

namespace tessel::test {

namespace {

/// Every byte value once, in order.
Bytes EveryByte() {
  Bytes bytes;
  for (int byte = 0; byte < 256; ++byte) bytes.push_back(static_cast<std::byte>(byte));
  return bytes;
}

/// Every control character but NUL, each between letters that are no hexadecimal digits.
std::string EveryControl() {
  std::string text = "z";
  for (char c = 1; c < ' '; ++c) text += std::string(1, c) + "z";
  return text;
}

using Limits = std::numeric_limits<double>;

std::vector<HardValue> Texts() {
  const auto text = [](const char* name, std::string value) {
    return HardValue{name, ValueKind::Text, Text(std::move(value))};
  };
  return {text("empty text", ""),
          text("one quote", "'"),
          text("quotes", "O'Brien said \"yes\" and 'no''"),
          text("double quote alone", "\""),
          text("backslashes", "C:\\new\\table\\"),
          text("tab", "a\tb"),
          text("line breaks", "one\r\ntwo\nthree\rfour"),
          text("ends with a line break", "line\n"),
          text("blanks around", "  a  b  "),
          text("commas and semicolons", "a,b;c"),
          text("markup", "<b>&amp; \"x\"</b>"),
          text("the word NULL", "NULL"),
          text("looks like a number", "0012.50"),
          text("percent and underscore", "100%_\\%"),
          text("comment", "--x /* y */"),
          text("umlauts", "Z\u00FCrich, S\u00E3o, \u6F22\u5B57"),
          text("emoji", "\U0001F600\U0001F468\u200D\U0001F469\u200D\U0001F467"),
          text("combining marks", "e\u0301\u0327"),
          text("right to left", "\u05E9\u05DC\u05D5\u05DD"),
          text("byte order mark", "\uFEFFx"),
          text("line separator", "a\u2028b"),
          text("ten thousand characters", std::string(10'000, 'x')),
          text("ten thousand quotes", std::string(10'000, '\'')),
          text("control characters", EveryControl()),
          text("control character before a hexadecimal digit", "\x01"
                                                               "cafe"),
          text("delete character", "a\x7F"
                                   "b"),
          text("NUL inside", std::string("a\0z", 3)),
          text("trigraph", "what?\?/")};
}

std::vector<HardValue> Numbers() {
  return {{"zero", ValueKind::Whole, Whole(0)},
          {"minus one", ValueKind::Whole, Whole(-1)},
          {"greatest whole number", ValueKind::Whole, Whole(INT64_MAX)},
          {"least whole number but one", ValueKind::Whole, Whole(-INT64_MAX)},
          {"least whole number", ValueKind::Whole, Whole(INT64_MIN)},
          {"a tenth", ValueKind::Floating, Value(0.1)},
          {"a third", ValueKind::Floating, Value(1.0 / 3)},
          {"great number", ValueKind::Floating, Value(1e300)},
          {"greatest number", ValueKind::Floating, Value(Limits::max())},
          {"least normal number", ValueKind::Floating, Value(Limits::min())},
          {"least number", ValueKind::Floating, Value(Limits::denorm_min())},
          {"negative number", ValueKind::Floating, Value(-123456.789)},
          {"infinity", ValueKind::Floating, Value(Limits::infinity())},
          {"no number", ValueKind::Floating, Value(Limits::quiet_NaN())},
          {"price", ValueKind::Exact, Value(Decimal{"1234567890.1200"})},
          {"negative price", ValueKind::Exact, Value(Decimal{"-0.0001"})},
          {"many digits", ValueKind::Exact, Value(Decimal{"12345678901234567890123456.1234"})}};
}

std::vector<HardValue> Others() {
  return {{"today", ValueKind::Date, Value(Moment{"2026-11-21"})},
          {"leap day", ValueKind::Date, Value(Moment{"2000-02-29"})},
          {"before 1900", ValueKind::Date, Value(Moment{"1752-09-14"})},
          {"first day of the year 1000", ValueKind::Date, Value(Moment{"1000-01-01"})},
          {"last day", ValueKind::Date, Value(Moment{"9999-12-31"})},
          {"time stamp", ValueKind::TimeStamp, Value(Moment{"2026-11-21 23:59:58"})},
          {"time stamp before 1900", ValueKind::TimeStamp, Value(Moment{"1899-12-30 00:00:01"})},
          {"microseconds", ValueKind::TimeStamp, Value(Moment{"2026-01-02 03:04:05.123456"})},
          {"true", ValueKind::Flag, Value(true)},
          {"false", ValueKind::Flag, Value(false)},
          {"null text", ValueKind::Text, Value()},
          {"null number", ValueKind::Whole, Value()},
          {"null bytes", ValueKind::Bytes, Value()},
          {"every byte", ValueKind::Bytes, Value(EveryByte())},
          {"one byte", ValueKind::Bytes, Value(Bytes{std::byte{0x27}})},
          {"no bytes", ValueKind::Bytes, Value(Bytes{})}};
}

}  // namespace

const std::vector<HardValue>& HardValues() {
  static const std::vector<HardValue> all = [] {
    std::vector<HardValue> values;
    for (auto&& list : {Texts(), Numbers(), Others()})
      values.insert(values.end(), list.begin(), list.end());
    return values;
  }();
  return all;
}

std::vector<HardValue> HardValuesWithout(const std::vector<std::string>& names) {
  std::vector<HardValue> values;
  for (const HardValue& hard : HardValues())
    if (std::ranges::find(names, hard.name) == names.end()) values.push_back(hard);
  return values;
}

DataType TypeOf(ValueKind kind) {
  switch (kind) {
    case ValueKind::Text: return DataType::VarWChar;
    case ValueKind::Whole: return DataType::BigInt;
    case ValueKind::Floating: return DataType::Double;
    case ValueKind::Exact: return DataType::Numeric;
    case ValueKind::Date: return DataType::DBDate;
    case ValueKind::TimeStamp: return DataType::DBTimeStamp;
    case ValueKind::Flag: return DataType::Boolean;
    case ValueKind::Bytes: return DataType::LongVarBinary;
  }
  return DataType::Variant;
}

ExportRows TypedRows(const std::vector<HardValue>& values) {
  constexpr int kinds = static_cast<int>(ValueKind::Bytes) + 1;
  ExportRows rows{{MemoryField("name")}, {}};
  for (int kind = 0; kind < kinds; ++kind)
    rows.fields.push_back(
        MemoryField("v" + std::to_string(kind), TypeOf(static_cast<ValueKind>(kind))));
  for (const HardValue& hard : values) {
    std::vector<Value> row(kinds + 1);
    row[0] = Value(hard.name);
    row[static_cast<std::size_t>(hard.kind) + 1] = hard.value;
    rows.rows.push_back(std::move(row));
  }
  return rows;
}

std::shared_ptr<Recordset> RecordsetOf(const std::vector<std::vector<Value>>& rows) {
  static PumpQueue queue;
  static MemoryData data(queue);
  std::vector<FieldInfo> fields;
  for (std::size_t i = 1; i <= rows.at(0).size(); ++i)
    fields.push_back(MemoryField("c" + std::to_string(i)));
  const std::string sql = "rows " + std::to_string(data.Log().executed.size());
  data.Answer(sql, std::move(fields), rows);
  const auto connection = data.CreateConnection();
  OpenNow(*connection);
  const auto recordset = QueryNow(*connection, sql);
  return recordset;
}

std::string Converted(Recordset& rows, const std::string& command, const std::string& tableName) {
  const auto& fields = rows.Fields();
  ColumnRange columns{0, static_cast<int>(fields.size()) - 1};
  const Conversion& conversion = ConversionOf(command, columns.Several());
  if (conversion.firstColumnOnly) columns.last = 0;
  const ConversionFrame frame = FrameOf(conversion, fields, columns, tableName);
  std::string text = frame.opening;
  RecordBatch batch;
  batch.columns = static_cast<std::size_t>(columns.last + 1);
  for (std::int64_t row = 0; row < rows.RecordCount(); ++row)
    for (std::size_t column = 0; column < batch.columns; ++column)
      batch.values.push_back(rows.ValueAt(row, column));
  AppendRecords(text, frame.format, batch);
  return text + frame.closing;
}

}  // namespace tessel::test
