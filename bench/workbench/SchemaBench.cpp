#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <stdexcept>

#include "bench/workbench/Parts.h"
#include "logic/schema/SchemaFile.h"
#include "logic/schema/SchemaLoading.h"
#include "tests/support/DataSteps.h"

namespace tessel::bench {

namespace {

constexpr int tables = 10'000;
constexpr int fields = 20;
constexpr int rounds = 7;

/// How long the event loop did not come round, at most: by the clock, and in this thread's own
/// time, without its waits for a processor. It looks every millisecond: looking all the time would
/// take a processor from the work that it measures.
class StallWatch {
 public:
  explicit StallWatch(Desktop& desktop) : desktop_(desktop) {
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
    timer_.start(1);
  }
  void Start() {
    desktop_.ProcessPending();
    last_ = StopWatch();
    lastBusy_ = BusyMilliseconds();
    longest_ = longestBusy_ = 0;
  }
  /// Ends what Start began.
  void Stop() {
    desktop_.ProcessPending();
    Look();
  }
  [[nodiscard]] double Longest() const { return longest_; }
  [[nodiscard]] double LongestBusy() const { return longestBusy_; }

 private:
  void Look() {
    const double busy = BusyMilliseconds();
    longest_ = std::max(longest_, last_.Milliseconds());
    longestBusy_ = std::max(longestBusy_, busy - lastBusy_);
    last_ = StopWatch();
    lastBusy_ = busy;
  }

  Desktop& desktop_;
  QTimer timer_;
  StopWatch last_;
  double lastBusy_ = 0;
  double longest_ = 0;
  double longestBusy_ = 0;
};

std::shared_ptr<Connection> Connect(DataAccess& data, const std::string& connectionString) {
  auto connection = data.CreateConnection();
  connection->SetConnectionString(connectionString);
  test::OpenNow(*connection);
  return connection;
}

std::shared_ptr<Recordset> Run(Connection& connection, const std::string& sql) {
  return test::QueryNow(connection, sql);
}

std::string CreateTable(int number) {
  const std::string name = "bench_table_" + std::to_string(number);
  std::string sql = "create table " + name + " (id integer primary key";
  for (int field = 1; field < fields; ++field)
    sql += ", some_field_" + std::to_string(field) + " varchar(20)";
  return sql + ");";
}

void Prepare(Connection& connection) {
  const auto present = test::ReadSchema(connection, SchemaRowset::Tables, {"", "", "", "TABLE"});
  if (present->RecordCount() >= tables) return;
  constexpr int atOnce = 100;
  for (int first = 0; first < tables; first += atOnce) {
    std::string sql = "begin;";
    for (int i = first; i < first + atOnce; ++i) sql += CreateTable(i);
    Run(connection, sql + "commit");
  }
}

/// The queries of a load and nothing else: their rows stay where they are.
double QueriesAlone(Connection& connection) {
  const StopWatch watch;
  try {
    Run(connection, "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE IN "
                    "('TABLE', 'BASE TABLE') ORDER BY TABLE_NAME");
    Run(connection, "SELECT TABLE_NAME, COLUMN_NAME FROM INFORMATION_SCHEMA.COLUMNS ORDER BY "
                    "TABLE_NAME, ORDINAL_POSITION");
  } catch (const Error&) {
    static_cast<void>(test::ReadSchema(connection, SchemaRowset::Tables, {"", "", "", "TABLE"}));
    for (const SchemaRowset kind :
         {SchemaRowset::Columns, SchemaRowset::PrimaryKeys, SchemaRowset::ForeignKeys,
          SchemaRowset::Indexes, SchemaRowset::Tables, SchemaRowset::Procedures})
      static_cast<void>(test::ReadSchema(connection, kind, {}));
  }
  return watch.Milliseconds();
}

std::string Figures(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

/// What one round takes, in milliseconds and megabytes.
struct Round {
  double bare = 0;
  double loaded = 0;
  double busy = 0;  ///< In the thread's own time while loading.
  double reloaded = 0;
  double stall = 0;
  double busyStall = 0;  ///< In the thread's own time.
  double held = 0;
  double written = 0;  ///< Into the schema file, and into the tree from it; in own time.
  double read = 0;
  double readStall = 0;
  double closing = 0;
};

/// The schema file beside the program, written when the schema was read and read at the next
/// connection.
void MeasureFile(Parts& parts, SchemaTree& tree, StallWatch& stalls, Round& round) {
  const std::string path = std::filesystem::temp_directory_path() / "workbench_bench.schema.xml";
  SchemaFile file(parts.global, parts.async, tree);
  double start = BusyMilliseconds();
  file.SaveSchemaXML(path, "d1", false);
  round.written = BusyMilliseconds() - start;
  stalls.Start();
  start = BusyMilliseconds();
  file.LoadSchemaXML("d1", path, false);
  round.read = BusyMilliseconds() - start;
  stalls.Stop();
  round.readStall = stalls.Longest();
  std::filesystem::remove(path);
}

Round MeasureRound(Parts& parts, SchemaTree& tree, const std::shared_ptr<Connection>& connection,
                   StallWatch& stalls) {
  SchemaLoading loading(parts.global, parts.async, tree);
  Round round;
  round.bare = QueriesAlone(*connection);
  tree.AddDatabase("d1", "Bench");
  const double memory = ResidentMegabytes();
  stalls.Start();
  const double busyBefore = BusyMilliseconds();
  const StopWatch load;
  if (!loading.LoadSchemaFromDB("d1", connection)) throw std::runtime_error("not loaded");
  round.loaded = load.Milliseconds();
  round.busy = BusyMilliseconds() - busyBefore;
  stalls.Stop();
  round.stall = stalls.Longest();
  round.busyStall = stalls.LongestBusy();
  round.held = ResidentMegabytes() - memory;
  const StopWatch again;
  if (!loading.LoadSchemaFromDB("d1", connection)) throw std::runtime_error("not loaded");
  round.reloaded = again.Milliseconds();
  if (tree.View().Children("d1").size() < tables) throw std::runtime_error("tables are missing");
  MeasureFile(parts, tree, stalls, round);
  const StopWatch closing;
  tree.RemoveDatabase("d1");
  parts.desktop.ProcessPending();
  round.closing = closing.Milliseconds();
  return round;
}

/// The least of the rounds, since other work on a machine can only add to a time.
double Least(const std::vector<Round>& all, double Round::*value) {
  return std::ranges::min(all, {}, value).*value;
}

double MedianOf(const std::vector<Round>& all, double Round::*value) {
  std::vector<double> values;
  for (const Round& round : all) values.push_back(round.*value);
  return Median(std::move(values));
}

std::string Spread(const std::vector<Round>& all, double Round::*value) {
  return Figures("%.1f", MedianOf(all, value)) +
         Figures(" ms (most %.1f)", std::ranges::max(all, {}, value).*value);
}

}  // namespace

void MeasureSchema(Parts& parts, const std::string& connectionString) {
  const auto connection = Connect(parts.data, connectionString);
  Prepare(*connection);
  SchemaTree tree(parts.frame->Find<TreeView>("trvBrowser"), parts.vocabulary);
  StallWatch stalls(parts.desktop);
  std::vector<Round> all;
  for (int round = 0; round < rounds; ++round)
    all.push_back(MeasureRound(parts, tree, connection, stalls));
  const double bare = Least(all, &Round::bare);
  const double loaded = Least(all, &Round::loaded);
  const std::string name = connectionString.substr(0, connectionString.find(';')) + ": ";
  Report(name + "queries alone", Figures("%.0f ms", bare));
  Report(name + "into the tree",
         Figures("%.0f ms", loaded) + Figures(" (%.2fx)", loaded / bare) +
             Figures(", %.0f ms of it the window's own", Least(all, &Round::busy)) +
             Figures(", again %.0f ms", Least(all, &Round::reloaded)) +
             Figures(", %.0f MB", all.front().held));
  Report(name + "longest stall", Spread(all, &Round::stall));
  Report(name + "stall, own time", Spread(all, &Round::busyStall));
  Report(name + "file written, own time", Spread(all, &Round::written));
  Report(name + "file read, own time", Spread(all, &Round::read));
  Report(name + "longest stall reading it", Spread(all, &Round::readStall));
  Report(name + "closed in", Spread(all, &Round::closing));
}

}  // namespace tessel::bench
