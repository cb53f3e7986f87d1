// Sorting, finding and filtering of a million rows, beside the bare work over the same store. The
// counter "worst ms" is the longest of the steps between which the window has its turn.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <numeric>
#include <string_view>

#include "bench/Orders.h"
#include "contract/base/EventQueue.h"
#include "contract/data/RowArrangement.h"
#include "data/cursor/DataAccessObjects.h"
#include "data/cursor/rows/ClientRecordset.h"
#include "data/rows/arranged/RowTest.h"
#include "data/rows/order/TextKeys.h"
#include "logic/text/find/FoundText.h"

namespace tessel::bench {

namespace {

constexpr std::int64_t rows = 1'000'000;
constexpr std::size_t customer = 1;
constexpr std::size_t city = 2;
constexpr std::size_t amount = 3;

/// Nothing here is asynchronous.
class NoQueue : public EventQueue {
 public:
  void Post(std::weak_ptr<const void> /*owner*/, std::function<void()> /*notice*/) override {}
};

/// The orders, read once.
struct OrdersInMemory {
  NoQueue queue;
  DataAccessObjects data{queue};
  std::shared_ptr<Connection> connection = OpenOrders(data, rows);
  std::shared_ptr<Recordset> recordset = ReadOrders(*connection);
};

Recordset& AllOrders() {
  static OrdersInMemory orders;
  return *orders.recordset;
}

const RowStore& Store() { return static_cast<ClientRecordset&>(AllOrders()).Store(); }

/// In milliseconds.
double RunToEnd(RowWork& work) {
  double worst = 0;
  while (!work.HasEnded()) {
    const auto start = std::chrono::steady_clock::now();
    work.Step();
    const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
    worst = std::max(worst, took.count());
  }
  return worst;
}

void Arrange(benchmark::State& state, const RowArrangement& wanted) {
  Recordset& orders = AllOrders();
  double worst = 0;
  for (auto _ : state) worst = std::max(worst, RunToEnd(*orders.StartArrange(wanted)));
  state.counters["worst ms"] = worst;
  state.counters["rows"] = static_cast<double>(orders.RecordCount());
  RunToEnd(*orders.StartArrange({}));
}

// --- sorting -------------------------------------------------------------------------------------

/// The keys of a field's texts one behind the other, and std::sort over the numbers of the rows.
void BareSort(benchmark::State& state, std::size_t field) {
  const RowStore& store = Store();
  for (auto _ : state) {
    TextKeys language;
    std::string bytes;
    std::vector<std::size_t> ends;
    for (std::int64_t row = 0; row < rows; ++row) {
      const ValueView value = store.At(row, field);
      const auto* text = std::get_if<std::string_view>(&value);
      if (text != nullptr && language.HasLanguage()) language.Append(*text, bytes);
      else if (text != nullptr) bytes += *text;
      ends.push_back(bytes.size());
    }
    const auto key = [&](std::uint32_t row) {
      const std::size_t start = row == 0 ? 0 : ends[row - 1];
      return std::string_view(bytes).substr(start, ends[row] - start);
    };
    std::vector<std::uint32_t> order(static_cast<std::size_t>(rows));
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
      const int way = key(a).compare(key(b));
      return way != 0 ? way < 0 : a < b;
    });
    benchmark::DoNotOptimize(order);
  }
}
BENCHMARK_CAPTURE(BareSort, customer, customer)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Arrange, sort_by_customer, RowArrangement{.sort = {{customer}}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BareSort, city, city)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Arrange, sort_by_city, RowArrangement{.sort = {{city}}})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Arrange, sort_by_amount, RowArrangement{.sort = {{amount, true}}})
    ->Unit(benchmark::kMillisecond);

// --- finding and filtering -----------------------------------------------------------------------

constexpr const char* looked = "1234";

/// Every cell of the store is asked whether its text holds another one.
void BareSearch(benchmark::State& state) {
  const RowStore& store = Store();
  const auto test = MakeTextTest(looked, {});
  const std::size_t fields = AllOrders().Fields().size();
  std::int64_t found = 0;
  for (auto _ : state) {
    CellTexts texts;
    found = 0;
    for (std::int64_t row = 0; row < rows; ++row)
      for (std::size_t field = 0; field < fields; ++field)
        if (texts.Passes(*test, store.At(row, field))) ++found;
  }
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(BareSearch)->Unit(benchmark::kMillisecond);

void Find(benchmark::State& state) {
  double worst = 0;
  std::int64_t found = 0;
  for (auto _ : state) {
    found = 0;
    CellSearch search{.test = MakeTextTest(looked, {})};
    search.found = [&](std::int64_t /*position*/, std::size_t /*field*/) { ++found; };
    worst = std::max(worst, RunToEnd(*AllOrders().StartSearch(std::move(search))));
  }
  state.counters["worst ms"] = worst;
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK(Find)->Unit(benchmark::kMillisecond);

void Filter(benchmark::State& state) {
  Arrange(state, {.conditions = {{.test = MakeTextTest(looked, {})}}});
}
BENCHMARK(Filter)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tessel::bench
