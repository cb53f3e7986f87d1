#include "bench/RawOrders.h"

#include <stdexcept>

#include <sqlite3.h>

#include "bench/RawBlock.h"

namespace tessel::bench {

namespace {

void AddText(RawTexts& texts, sqlite3_stmt* statement, int column) {
  if (sqlite3_column_type(statement, column) == SQLITE_NULL) return texts.AddNull();
  const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
  texts.Add({text, static_cast<std::size_t>(sqlite3_column_bytes(statement, column))});
}

void AddRow(RawBlock& block, sqlite3_stmt* row) {
  block.id.push_back(sqlite3_column_int64(row, 0));
  AddText(block.customer, row, 1);
  AddText(block.city, row, 2);
  block.amount.push_back(sqlite3_column_double(row, 3));
  block.quantity.push_back(sqlite3_column_int64(row, 4));
  AddText(block.placed, row, 5);
  AddText(block.note, row, 6);
  block.paid.push_back(sqlite3_column_int64(row, 7));
  AddText(block.code, row, 8);
  AddText(block.rate, row, 9);
}

}  // namespace

std::size_t ReadOrdersRaw(const std::string& file) {
  sqlite3* database = nullptr;
  sqlite3_stmt* statement = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(file.c_str(), &database, flags, nullptr) != SQLITE_OK ||
      sqlite3_prepare_v2(database, "select * from orders", -1, &statement, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database));
  RawBlocks blocks;
  while (sqlite3_step(statement) == SQLITE_ROW) AddRow(blocks.ForNextRow(), statement);
  sqlite3_finalize(statement);
  sqlite3_close(database);
  return blocks.Bytes();
}

}  // namespace tessel::bench
