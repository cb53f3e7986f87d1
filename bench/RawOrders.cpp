#include "bench/RawOrders.h"

#include <cstdint>
#include <stdexcept>
#include <vector>

#include <sqlite3.h>

namespace tessel::bench {

namespace {

constexpr std::size_t blockRows = 65536;

struct Texts {
  std::vector<std::uint32_t> ends;
  std::vector<char> arena;
  std::vector<std::uint64_t> nulls;

  void Add(sqlite3_stmt* statement, int column) {
    if (sqlite3_column_type(statement, column) == SQLITE_NULL) {
      if (nulls.empty()) nulls.resize(blockRows / 64);
      nulls[ends.size() / 64] |= std::uint64_t{1} << (ends.size() % 64);
    } else {
      const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
      arena.insert(arena.end(), text, text + sqlite3_column_bytes(statement, column));
    }
    ends.push_back(static_cast<std::uint32_t>(arena.size()));
  }
  [[nodiscard]] std::size_t Bytes() const {
    return ends.capacity() * 4 + arena.capacity() + nulls.capacity() * 8;
  }
};

struct Block {
  std::vector<std::int64_t> id, quantity, paid;
  std::vector<double> amount;
  Texts customer, city, placed, note, code, rate;

  Block() {
    for (auto* numbers : {&id, &quantity, &paid}) numbers->reserve(blockRows);
    amount.reserve(blockRows);
    for (Texts* texts : {&customer, &city, &placed, &note, &code, &rate})
      texts->ends.reserve(blockRows);
  }

  void Add(sqlite3_stmt* row) {
    id.push_back(sqlite3_column_int64(row, 0));
    customer.Add(row, 1);
    city.Add(row, 2);
    amount.push_back(sqlite3_column_double(row, 3));
    quantity.push_back(sqlite3_column_int64(row, 4));
    placed.Add(row, 5);
    note.Add(row, 6);
    paid.push_back(sqlite3_column_int64(row, 7));
    code.Add(row, 8);
    rate.Add(row, 9);
  }
  void Shrink() {
    for (Texts* texts : {&customer, &city, &placed, &note, &code, &rate})
      texts->arena.shrink_to_fit();
  }
  [[nodiscard]] std::size_t Bytes() const {
    std::size_t bytes = (id.capacity() + quantity.capacity() + paid.capacity()) * 8;
    bytes += amount.capacity() * 8;
    for (const Texts* texts : {&customer, &city, &placed, &note, &code, &rate})
      bytes += texts->Bytes();
    return bytes;
  }
};

}  // namespace

std::size_t ReadOrdersRaw(const std::string& file) {
  sqlite3* database = nullptr;
  sqlite3_stmt* statement = nullptr;
  const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX;
  if (sqlite3_open_v2(file.c_str(), &database, flags, nullptr) != SQLITE_OK ||
      sqlite3_prepare_v2(database, "select * from orders", -1, &statement, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database));
  std::vector<Block> blocks;
  while (sqlite3_step(statement) == SQLITE_ROW) {
    if (blocks.empty() || blocks.back().id.size() == blockRows) {
      if (!blocks.empty()) blocks.back().Shrink();
      blocks.emplace_back();
    }
    blocks.back().Add(statement);
  }
  sqlite3_finalize(statement);
  sqlite3_close(database);
  std::size_t bytes = 0;
  for (const Block& block : blocks) bytes += block.Bytes();
  return bytes;
}

}  // namespace tessel::bench
