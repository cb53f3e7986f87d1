#include "tests/data/bodies/AllBodies.h"

namespace tessel::test {

void WriteTest::SetUp() {
  DatabaseTest::SetUp();
  if (IsSkipped()) return;
  connection_ = Connect();
  other_ = Connect();
  table_ = std::make_unique<ScratchTable>(Db(), connection_,
                                          "id " + Db().KeyType() + ", name " + Db().TextType() +
                                              ", data " + Db().BinaryType() + ", n integer");
  table_->Insert("(1, 'one', null, 10), (2, 'two', null, 20), (3, 'three', null, null)");
}

std::shared_ptr<Recordset> WriteTest::OpenToWrite(Connection& connection, const std::string& sql) {
  const auto recordset = QueryNow(connection, sql, LockType::Optimistic);
  return recordset;
}

std::vector<std::string> WriteTest::Outside(const std::string& sql) {
  const auto recordset = Run(*other_, sql);
  std::vector<std::string> lines;
  for (const auto& row : RowsOf(*recordset)) {
    std::string& line = lines.emplace_back();
    for (const Value& value : row) {
      if (&value != &row.front()) line += "|";
      line += IsNull(ToView(value)) ? "NULL" : ToText(ToView(value));
    }
  }
  return lines;
}

}  // namespace tessel::test
