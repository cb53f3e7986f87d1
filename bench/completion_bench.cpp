#include <benchmark/benchmark.h>

#include "logic/query/completion/Completion.h"

namespace tessel::bench {

namespace {

constexpr int words = 200'000;

/// The words of four databases of 50,000; one in five is in all of them.
Vocabulary::Section ManyWords() {
  Vocabulary::Section section;
  for (int database = 0; database < 4; ++database) {
    WordList& list = Vocabulary::ListNamed(section, "d" + std::to_string(database));
    for (int i = 0; i < words / 4; ++i) {
      const int number = i % 5 == 0 ? i : i * 4 + database;
      list.push_back("customer_order_" + std::to_string(number) + "_field");
    }
  }
  return section;
}

void Complete(benchmark::State& state, const char* typed, CompletionMode mode) {
  const Vocabulary::Section section = ManyWords();
  std::size_t found = 0;
  for (auto _ : state) {
    const TextLines words = FindCompletions(section, typed, mode);
    found = words.Size();
    benchmark::DoNotOptimize(words);
  }
  state.counters["words"] = words;
  state.counters["found"] = static_cast<double>(found);
}
BENCHMARK_CAPTURE(Complete, every_word, "", CompletionMode{})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Complete, start_of_word, "customer_order_19", CompletionMode{})
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Complete, nothing, "x", CompletionMode{})->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Complete, initials, "co", CompletionMode{false, true})
    ->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tessel::bench
