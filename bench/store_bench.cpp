#include <benchmark/benchmark.h>

#include "bench/Orders.h"
#include "bench/OrdersFile.h"
#include "bench/RawOrders.h"
#include "contract/base/EventQueue.h"
#include "data/cursor/DataAccessObjects.h"
#include "data/cursor/rows/ClientRecordset.h"

namespace tessel::bench {

namespace {

constexpr std::int64_t rows = 1'000'000;
constexpr double megabyte = 1e6;

/// Nothing here is asynchronous.
class NoQueue : public EventQueue {
 public:
  void Post(std::weak_ptr<const void> /*owner*/, std::function<void()> /*notice*/) override {}
};

void RawLoop(benchmark::State& state) {
  const std::string file = OrdersFile(rows);
  std::size_t bytes = 0;
  for (auto _ : state) bytes = ReadOrdersRaw(file);
  state.counters["MB"] = static_cast<double>(bytes) / megabyte;
}
BENCHMARK(RawLoop)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void ExecuteToLastRow(benchmark::State& state) {
  NoQueue queue;
  DataAccessObjects data(queue);
  const auto connection = OpenOrders(data, rows);
  std::size_t bytes = 0;
  for (auto _ : state) {
    const auto recordset = ReadOrders(*connection);
    bytes = static_cast<const ClientRecordset&>(*recordset).HeldBytes();
  }
  state.counters["MB"] = static_cast<double>(bytes) / megabyte;
}
BENCHMARK(ExecuteToLastRow)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void LookAtEveryCell(benchmark::State& state) {
  NoQueue queue;
  DataAccessObjects data(queue);
  const auto recordset = ReadOrders(*OpenOrders(data, rows));
  const std::size_t fields = recordset->Fields().size();
  for (auto _ : state) {
    for (std::int64_t position = 0; position < rows; ++position)
      for (std::size_t field = 0; field < fields; ++field)
        benchmark::DoNotOptimize(recordset->ValueAt(position, field));
  }
}
BENCHMARK(LookAtEveryCell)->Unit(benchmark::kMillisecond);

void Sort(benchmark::State& state, const char* order) {
  NoQueue queue;
  DataAccessObjects data(queue);
  const auto recordset = ReadOrders(*OpenOrders(data, rows));
  for (auto _ : state) {
    recordset->SetSort(order);
    recordset->SetSort("");
  }
}
BENCHMARK_CAPTURE(Sort, number, "amount")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Sort, text, "customer, id DESC")->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tessel::bench
