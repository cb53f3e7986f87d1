#include <QApplication>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "bench/workbench/Parts.h"
#include "schema/SchemaLoading.h"

namespace tessel::bench {

namespace {

constexpr int tables = 10'000;
constexpr int fields = 20;
constexpr int rounds = 3;

/// How long the event loop did not come round, at most.
class StallWatch {
 public:
  explicit StallWatch(Desktop& desktop) : desktop_(desktop) {
    timer_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      longest_ = std::max(longest_, last_.Milliseconds());
      last_ = StopWatch();
    });
    timer_.start(0);
    desktop_.ProcessPending();
    Start();
  }
  void Start() {
    longest_ = 0;
    last_ = StopWatch();
  }
  [[nodiscard]] double Longest() {
    desktop_.ProcessPending();
    return longest_;
  }

 private:
  Desktop& desktop_;
  QTimer timer_;
  StopWatch last_;
  double longest_ = 0;
};

std::shared_ptr<Connection> Connect(DataAccess& data, const std::string& connectionString) {
  auto connection = data.CreateConnection();
  connection->SetConnectionString(connectionString);
  connection->Open({}, {}, 0);
  return connection;
}

std::shared_ptr<Recordset> Run(Connection& connection, const std::string& sql) {
  auto recordset = connection.CreateRecordset();
  recordset->SetSource(sql);
  recordset->Open(openOption::text);
  return recordset;
}

std::string CreateTable(int number) {
  const std::string name = "bench_table_" + std::to_string(number);
  std::string sql = "create table " + name + " (id integer primary key";
  for (int field = 1; field < fields; ++field)
    sql += ", some_field_" + std::to_string(field) + " varchar(20)";
  return sql + ");";
}

void Prepare(Connection& connection) {
  const auto present = connection.OpenSchema(SchemaRowset::Tables, {"", "", "", "TABLE"});
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
    static_cast<void>(connection.OpenSchema(SchemaRowset::Tables, {"", "", "", "TABLE"}));
    static_cast<void>(connection.OpenSchema(SchemaRowset::Columns, {}));
  }
  return watch.Milliseconds();
}

std::string Figures(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

}  // namespace

void MeasureSchema(Parts& parts, const std::string& connectionString) {
  const auto connection = Connect(parts.data, connectionString);
  Prepare(*connection);
  auto& view = parts.frame->Find<TreeView>("trvBrowser");
  SchemaTree tree(view, parts.vocabulary);
  SchemaLoading loading(parts.global, parts.async, tree);
  StallWatch stalls(parts.desktop);
  for (int round = 0; round < rounds; ++round) {
    const double bare = QueriesAlone(*connection);
    tree.AddDatabase("d1", "Bench");
    const double memory = ResidentMegabytes();
    stalls.Start();
    const StopWatch load;
    if (!loading.LoadSchemaFromDB("d1", connection)) throw std::runtime_error("not loaded");
    const double loaded = load.Milliseconds();
    const double stall = stalls.Longest();
    const double held = ResidentMegabytes() - memory;
    const StopWatch again;
    if (!loading.LoadSchemaFromDB("d1", connection)) throw std::runtime_error("not loaded");
    const double reloaded = again.Milliseconds();
    const auto count = view.Children("d1").size();
    const StopWatch closing;
    tree.RemoveDatabase("d1");
    parts.desktop.ProcessPending();
    Report(connectionString.substr(0, connectionString.find(';')),
           std::to_string(count) + Figures(" tables: queries %.0f ms", bare) +
               Figures(", into the tree %.0f ms", loaded) + Figures(" (%.2fx)", loaded / bare) +
               Figures(", again %.0f ms", reloaded) + Figures(", stall %.0f ms", stall) +
               Figures(", %.0f MB", held) + Figures(", closed in %.1f ms", closing.Milliseconds()));
  }
}

}  // namespace tessel::bench
