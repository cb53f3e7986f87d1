// One measurement of a raw loop over a driver's library, which the data layer is held against, in a
// process of its own.

#include "bench/RawOrders.h"
#include "bench/compare/Cases.h"
#include "bench/compare/RawLoops.h"
#include "bench/compare/Say.h"

namespace tessel::bench {

namespace {

void SayHeld(const RawBlocks& blocks) {
  Say("held", blocks.Bytes());
  Say("rows", blocks.Rows());
  Say("peak", PeakBytes());
}

void RawCatalog(Arguments arguments) { Say("rows", ReadPostgresCatalog(arguments[0])); }

void RawSqlite(Arguments arguments) {
  const Stopwatch watch;
  const std::size_t bytes = ReadOrdersRaw(arguments[0]);
  Say("seconds", watch.Seconds());
  Say("held", bytes);
  Say("peak", PeakBytes());
}

void RawPostgres(Arguments arguments) { SayHeld(ReadPostgresOrders(arguments[0])); }
/// <connection string> <connections>
void RawPostgresTogether(Arguments arguments) {
  Say("rows", ReadPostgresOrdersTogether(arguments[0], std::stoul(arguments[1])));
}
void RawMaria(Arguments arguments) { SayHeld(ReadMariaOrders(arguments[0])); }
void RawOdbc(Arguments arguments) { SayHeld(ReadOdbcOrders(arguments[0])); }

}  // namespace

}  // namespace tessel::bench

int main(int argc, char* argv[]) {
  using namespace tessel::bench;
  return RunCase({{"sqlite", {1, RawSqlite}},
                  {"postgresql", {1, RawPostgres}},
                  {"postgresql-together", {2, RawPostgresTogether}},
                  {"mariadb", {1, RawMaria}},
                  {"odbc", {1, RawOdbc}},
                  {"catalog", {1, RawCatalog}}},
                 argc, argv);
}
