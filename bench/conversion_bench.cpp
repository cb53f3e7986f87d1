#include <benchmark/benchmark.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "bench/Orders.h"
#include "bench/PeakMemory.h"
#include "bench/RawCsv.h"
#include "contract/desktop/controls/DataGrid.h"
#include "data/cursor/DataAccessObjects.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "desktop/QtDesktop.h"
#include "logic/program/Global.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/conversions/RecordConversion.h"
#include "logic/text/SqlTarget.h"
#include "system/PosixFiles.h"

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
  int argc = 1;
  char name[7] = "Tessel";
  char* argv[2] = {name, nullptr};
  QtDesktop desktop{argc, argv};
  PosixFiles files;
  DataAccessObjects data{desktop.Events()};
  Global global{Platform{desktop, data, files, "/tmp", "/tmp/Tessel", "", {}}};
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
  setenv("QT_QPA_PLATFORM", "offscreen", 0);
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

}  // namespace

}  // namespace tessel::bench
