#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QTimer>
#include <algorithm>
#include <memory>
#include <string>

#include "bench/BenchDesktop.h"
#include "bench/Orders.h"
#include "bench/PeakMemory.h"
#include "bench/RawCsv.h"
#include "bench/RawSheet.h"
#include "contract/desktop/controls/DataGrid.h"
#include "data/cursor/DataAccessObjects.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "logic/program/Global.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/conversions/RecordConversion.h"
#include "logic/results/export/FileExport.h"
#include "logic/text/SqlTarget.h"
#include "system/PosixFiles.h"
#include "system/ThreadLine.h"
#include "system/sheets/XlsxFile.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::bench {

namespace {

constexpr std::int64_t rows = 1'000'000;
constexpr double megabyte = 1e6;

class NoSqlWindow final : public SqlTarget {
 public:
  void InsertText(std::string_view /*text*/) override {}
};

/// A records window on the screen, if there is one, that shows a million orders.
struct Program {
  QtDesktop& desktop = TheDesktop();
  PosixFiles files;
  DataAccessObjects data{desktop.Events()};
  XlsxFiles sheets;
  Global global{Platform{.desktop = desktop,
                         .data = data,
                         .files = files,
                         .appPath = "/tmp",
                         .executable = "/tmp/Tessel",
                         .version = "",
                         .registeredClass = {},
                         .makeWorkLine = [] { return std::make_unique<ThreadLine>(); },
                         .sheets = &sheets}};
  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  std::unique_ptr<Window> window = desktop.MakeWindow("frmRecords");
  dlgAsync async{desktop, *frame};
  NoSqlWindow sqlWindow;
  RecordConversion conversion{global, *window, async, sqlWindow};
  std::shared_ptr<Connection> connection = OpenOrders(data, rows);
  std::shared_ptr<Recordset> recordset = ReadOrders(*connection);

  Program() {
    frame->Show();
    window->Show();
    window->Find<DataGrid>("DataGrid").SetDataSource(recordset);
  }
};

/// Made once, and left to the end of the process: there can be one desktop only.
Program& TheProgram() {
  static auto* program = new Program;
  return *program;
}

void Report(benchmark::State& state, std::size_t bytes, double peak) {
  state.counters["MB"] = static_cast<double>(bytes) / megabyte;
  state.counters["peak/text"] = peak / static_cast<double>(bytes);
}

void CsvRawLoop(benchmark::State& state) {
  const auto& store = static_cast<const ClientRecordset&>(*TheProgram().recordset).Store();
  std::size_t bytes = RawCsv(store, 0).size();
  const PeakMemory peak;
  for (auto _ : state) bytes = RawCsv(store, bytes).size();
  Report(state, bytes, peak.Bytes());
}
BENCHMARK(CsvRawLoop)->Unit(benchmark::kMillisecond);

/// Serving the window once, while the progress window shows.
void Yield(benchmark::State& state) {
  Program& program = TheProgram();
  program.async.InitProgress("Converting all 1000000 records...", rows);
  for (auto _ : state) benchmark::DoNotOptimize(program.async.Yield());
  program.async.Unload();
}
BENCHMARK(Yield);

/// With the progress window and its Cancel button, as the user runs it.
void Convert(benchmark::State& state, const char* command) {
  Program& program = TheProgram();
  std::size_t bytes = 0;
  const PeakMemory peak;
  for (auto _ : state) bytes = program.conversion.ConvertedText(command)->size();
  Report(state, bytes, peak.Bytes());
}
BENCHMARK_CAPTURE(Convert, csv, "mnuCvtCSV")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Convert, quotedCsv, "mnuCvtQuotedCSV")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Convert, insert, "mnuCvtInsertSQL")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Convert, html, "mnuCvtHTMLTable")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Convert, arrayC, "mnuCvtArrayC")->Unit(benchmark::kMillisecond);

// --- to a file -----------------------------------------------------------------------------------

/// What the rows take without the program: the loop above, and the file replaced whole.
void CsvRawFile(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const auto& store = static_cast<const ClientRecordset&>(*TheProgram().recordset).Store();
  std::size_t bytes = RawCsv(store, 0).size();
  for (auto _ : state) {
    const std::string text = RawCsv(store, bytes);
    TheProgram().files.ReplaceWhole(folder.File("a"), text, false);
  }
  state.counters["MB"] = static_cast<double>(bytes) / megabyte;
}
BENCHMARK(CsvRawFile)->Unit(benchmark::kMillisecond);

/// The longest time between two moments in which the window was served.
class LongestPause {
 public:
  LongestPause() {
    QObject::connect(&timer_, &QTimer::timeout, [this] {
      if (sinceLast_.isValid()) longest_ = std::max(longest_, sinceLast_.nsecsElapsed());
      sinceLast_.start();
    });
    timer_.start(0);
  }
  [[nodiscard]] double Milliseconds() const { return static_cast<double>(longest_) / 1e6; }
  /// What follows is another run.
  void Restart() { sinceLast_.invalidate(); }

 private:
  QTimer timer_;
  QElapsedTimer sinceLast_;
  qint64 longest_ = 0;
};

/// With the progress window and its Cancel button, as the user runs it. The peak is what it takes
/// beside the rows.
void Export(benchmark::State& state, ExportFormat format) {
  const test::TemporaryFolder folder;
  Program& program = TheProgram();
  const auto& fields = program.recordset->Fields();
  ExportChoices choices;
  choices.format = format;
  choices.database = SqlDialect::PostgreSQL;
  choices.table = "orders";
  LongestPause pause;
  const PeakMemory peak;
  for (auto _ : state) {
    pause.Restart();
    BatchReader reader(program.recordset, 0, fields.size(), {});
    const auto report =
        ExportToFile(program.global, program.async, reader, fields, choices, folder.File("a"));
    benchmark::DoNotOptimize(report);
  }
  state.counters["MB"] = static_cast<double>(program.files.Size(folder.File("a"))) / megabyte;
  state.counters["pause"] = pause.Milliseconds();
  state.counters["peakMB"] = peak.Bytes() / megabyte;
}
BENCHMARK_CAPTURE(Export, csv, ExportFormat::Csv)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, json, ExportFormat::JsonLines)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, sql, ExportFormat::Sql)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Export, sheets, ExportFormat::Sheets)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(1);

/// The library alone, with the same cells.
void SheetsRaw(benchmark::State& state) {
  const test::TemporaryFolder folder;
  const auto& store = static_cast<const ClientRecordset&>(*TheProgram().recordset).Store();
  for (auto _ : state) RawSheet(store, folder.File("a.xlsx"));
}
BENCHMARK(SheetsRaw)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace

}  // namespace tessel::bench
