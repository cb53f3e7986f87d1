#include "bench/OrdersFile.h"

#include <filesystem>
#include <stdexcept>

#include <sqlite3.h>

namespace tessel::bench {

namespace {

void Execute(sqlite3* database, const std::string& sql) {
  if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
    throw std::runtime_error(sqlite3_errmsg(database));
}

/// Every value follows from the row's number: the file is the same each time.
std::string FillStatement(std::int64_t rows) {
  return "with recursive c(n) as (select 1 union all select n + 1 from c where n < " +
         std::to_string(rows) +
         ") insert into orders select n,"
         " 'Customer ' || (n * 7919 % 20000),"
         " case n % 5 when 0 then 'Aachen' when 1 then 'Z\u00fcrich' when 2 then 'S\u00e3o Paulo'"
         "  when 3 then 'New York' else 'Reykjav\u00edk' end,"
         " (n * 104729 % 1000003) / 100.0,"
         " n * 31 % 97,"
         " datetime(1600000000 + n * 61, 'unixepoch'),"
         " case when n % 10 = 3 then null else substr('Please leave the parcel beside the door, "
         "\u6f22\u5b57 or ring twice', 1, n * 13 % 61) end,"
         " n % 2,"
         " printf('%08X', n * 2654435761 % 4294967296),"
         " printf('%d.%04d', n % 9 + 1, n * 17 % 10000) from c";
}

void Fill(const std::string& file, std::int64_t rows) {
  sqlite3* database = nullptr;
  if (sqlite3_open(file.c_str(), &database) != SQLITE_OK)
    throw std::runtime_error("Cannot make " + file);
  Execute(database, "pragma journal_mode = off; pragma synchronous = off; "
                    "create table orders (id integer primary key, customer text, city text, "
                    "amount real, quantity integer, placed datetime, note text, paid boolean, "
                    "code text, rate text); begin; " +
                        FillStatement(rows) + "; commit");
  sqlite3_close(database);
}

}  // namespace

std::string OrdersFile(std::int64_t rows) {
  const auto folder = std::filesystem::temp_directory_path();
  const std::string file = (folder / ("tessel-bench-" + std::to_string(rows) + ".db")).string();
  if (std::filesystem::exists(file)) return file;
  Fill(file + ".part", rows);
  std::filesystem::rename(file + ".part", file);
  return file;
}

}  // namespace tessel::bench
