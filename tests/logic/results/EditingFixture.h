#pragma once

#include <memory>
#include <string>

#include "tests/headless/HeadlessGrid.h"
#include "tests/logic/results/RecordsFixture.h"

namespace tessel::test {

/// A connected records window with three rows that can be changed, and the table they come from.
class EditingFixture : public RecordsFixture {
 protected:
  static constexpr int id = 0;
  static constexpr int name = 1;
  static constexpr int active = 2;
  static constexpr int picture = 3;

  [[nodiscard]] static Value Int(std::int64_t number) { return number; }
  [[nodiscard]] static Value Text(const char* text) { return std::string(text); }
  [[nodiscard]] static Bytes BytesOf(std::size_t count) { return Bytes(count, std::byte{7}); }

  /// Unlocks, and runs a query that gives the rows of the table.
  MemoryResult& RunUnlocked(const std::string& sql = "select") {
    if (W().Find<CheckBox>("chkLock").Value()) W().PressKey('L', shiftState::ctrl);
    return RunRows(sql);
  }
  MemoryResult& RunRows(const std::string& sql = "select") {
    std::vector<FieldInfo> fields{MemoryField("id", DataType::Integer), MemoryField("name"),
                                  MemoryField("active", DataType::Boolean),
                                  MemoryField("picture", DataType::LongVarBinary),
                                  MemoryField("picture_FileName")};
    fields[id].nullable = false;
    fields[id].autoIncrement = true;
    MemoryResult& answer =
        data.Answer(sql, fields,
                    {{Int(1), Text("one"), Value(true), Value(BytesOf(2048)), Text("one.png")},
                     {Int(2), Value(), Value(), Value(), Value()},
                     {Int(3), Text(""), Value(false), Value(Bytes()), Value()}});
    table = answer.rows;
    EXPECT_TRUE(Run(sql));
    return answer;
  }

  HeadlessGrid& G() { return dynamic_cast<HeadlessGrid&>(Grid()); }
  void ClickCell(std::int64_t position, int column) {
    W().ClickGridCell("DataGrid", position, column);
  }
  void Type(const char* text) { W().Type("DataGrid", text); }
  void Press(int keyCode, int shift = shiftState::none) { W().PressKey(keyCode, shift); }
  [[nodiscard]] bool ButtonsShow() { return Shows("cmdAccept") && Shows("cmdReject"); }
  [[nodiscard]] bool NoButtonShows() { return !Shows("cmdAccept") && !Shows("cmdReject"); }
  [[nodiscard]] Value Stored(std::size_t row, std::size_t field) const {
    return table->at(row).at(field);
  }
  void ExpectNotice(const std::string& text) {
    desktop.ExpectMessage(text, MessageResult::Ok, [](const Message& message) {
      EXPECT_EQ(message.icon, MessageIcon::Exclamation);
    });
  }

  const std::string warningDetails =
      "The recordset properties indicate that the field values of a record may or may not identify "
      "it uniquely. This means that when trying to update or delete an existing record, there is "
      "no guarantee that the information being used to locate it will specify only that record. If "
      "multiple records match the criteria, they will all be affected - incorrectly.\r\n\r\nTo be "
      "able to correctly identify records uniquely, a primary key should be defined. Depending on "
      "the provider, you may also need to select all fields that constitute the primary key.";
  std::shared_ptr<MemoryRows> table;
};

}  // namespace tessel::test
