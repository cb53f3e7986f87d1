// Measurements of importing, in a process of its own: the file is read and its values are made as
// the program's import does it, and loaded over its connection. Prints lines of a figure's name and
// its value. usage: compare_load load <connection string> <file with a header> | prepare
// <connection string> | scan <file>

#include <algorithm>
#include <stdexcept>

#include "bench/compare/Cases.h"
#include "bench/compare/Say.h"
#include "contract/data/BulkLoad.h"
#include "data/cursor/DataAccessObjects.h"
#include "logic/import/ImportFeed.h"
#include "logic/import/guessing/ImportScan.h"
#include "system/PosixFiles.h"
#include "tests/data/support/PumpQueue.h"
#include "tests/support/DataSteps.h"

namespace tessel::bench {

namespace {

constexpr const char* table = "imported";

/// The columns of `orders`, in the order of the file.
std::vector<ImportColumn> Columns() {
  const std::vector<LoadColumn> columns = {
      {"id", DataType::Integer},        {"customer", DataType::VarWChar},
      {"city", DataType::VarWChar},     {"amount", DataType::Double},
      {"quantity", DataType::Integer},  {"placed", DataType::DBTimeStamp},
      {"note", DataType::LongVarWChar}, {"paid", DataType::Boolean},
      {"code", DataType::VarWChar},     {"rate", DataType::Numeric}};
  std::vector<ImportColumn> all;
  for (std::size_t i = 0; i < columns.size(); ++i) all.push_back({i, columns[i]});
  return all;
}

std::vector<std::string> Names() {
  std::vector<std::string> names;
  for (const ImportColumn& column : Columns()) names.push_back(column.target.name);
  return names;
}

struct Platform {
  test::PumpQueue queue;
  DataAccessObjects data{queue, nullptr, RowMemory::OfMachine()};
  PosixFiles files;

  std::shared_ptr<Connection> Connect(const std::string& connectionString) {
    auto connection = data.CreateConnection();
    connection->SetConnectionString(connectionString);
    test::OpenNow(*connection);
    return connection;
  }
  ImportSource Source(const std::string& path) {
    return {path, [this, path] { return files.OpenToRead(path); }};
  }
};

/// <connection string>: an empty table.
void Prepare(Arguments arguments) {
  Platform platform;
  const auto connection = platform.Connect(arguments[0]);
  test::QueryNow(*connection, std::string("drop table if exists ") + table);
  test::QueryNow(*connection,
                 std::string("create table ") + table +
                     " (id integer, customer text, city text, amount double precision, quantity "
                     "integer, placed timestamp, note text, paid boolean, code text, rate "
                     "numeric(10,4))");
}

/// <connection string> <file>
void Load(Arguments arguments) {
  Platform platform;
  const auto connection = platform.Connect(arguments[0]);
  const Stopwatch watch;
  LoadRequest request{.table = table, .columns = {}, .rows = {}};
  for (const ImportColumn& column : Columns()) request.columns.push_back(column.target);
  request.rows = std::make_shared<ImportFeed>(platform.Source(arguments[1]), ImportFormat{},
                                              Names(), Columns());
  const auto load = connection->StartLoad(std::move(request));
  load->Wait();
  Say("seconds", watch.Seconds());
  if (load->Failure()) throw std::runtime_error(load->Failure()->description);
  Say("rows", load->RowsKept());
  Say("peak", PeakBytes());
}

/// <file>: looks through all of it, in the slices of the window.
void Scan(Arguments arguments) {
  Platform platform;
  const Stopwatch watch;
  ImportScan scan(platform.Source(arguments[0]), ImportFormat{});
  double longest = 0;
  for (bool more = true; more;) {
    const Stopwatch step;
    more = scan.Step();
    longest = std::max(longest, step.Seconds());
  }
  Say("seconds", watch.Seconds());
  Say("rows", scan.Records());
  Say("longest", longest);
}

}  // namespace

}  // namespace tessel::bench

int main(int argc, char* argv[]) {
  using namespace tessel::bench;
  return RunCase({{"prepare", {1, Prepare}}, {"load", {2, Load}}, {"scan", {1, Scan}}}, argc, argv);
}
