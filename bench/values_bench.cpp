// Looking into values: 100 MB as hexadecimal digits until the first page is painted, and JSON and
// XML on lines of their own, beside a bare walk over the same bytes.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "bench/BenchDesktop.h"
#include "contract/desktop/controls/values/HexBox.h"
#include "desktop/controls/values/HexView.h"
#include "logic/text/indent/TextIndent.h"

namespace tessel::bench {

namespace {

constexpr std::size_t hexBytes = 100'000'000;
constexpr std::size_t textBytes = 50'000'000;

/// The window of a value on the screen, if there is one.
struct ValueWindow {
  QtDesktop& desktop = TheDesktop();
  std::unique_ptr<Window> window = desktop.MakeWindow("frmValue");
  HexBox& box = window->Find<HexBox>("hexValue");

  ValueWindow() {
    window->Find<Control>("txtValue").SetVisible(false);
    box.SetVisible(true);
    window->Show();
    desktop.ProcessPending();
  }
  [[nodiscard]] static HexView& View() {
    for (QWidget* widget : QApplication::allWidgets())
      if (auto* view = qobject_cast<HexView*>(widget)) return *view;
    std::abort();
  }
};

ValueWindow& TheWindow() {
  static auto* window = new ValueWindow;
  return *window;
}

void OpenHex(benchmark::State& state) {
  ValueWindow& value = TheWindow();
  const std::vector<std::byte> bytes(hexBytes, std::byte{0x41});
  for (auto _ : state) {
    value.box.SetSource([&] { return std::span<const std::byte>(bytes); });
    ValueWindow::View().viewport()->repaint();
    value.box.Select(static_cast<std::int64_t>(hexBytes) - 1, 1);
    ValueWindow::View().viewport()->repaint();
  }
  value.box.SetSource(nullptr);
}

std::string Repeated(const std::string& head, const std::string& part, const std::string& end) {
  std::string text = head;
  while (text.size() < textBytes) text += part;
  return text + end;
}

std::string Json() { return Repeated("[", R"({"id":12345,"name":"n","v":[1,2.50]},)", "1]"); }
std::string Xml() { return Repeated("<r>", "<row id=\"12345\"><name>some</name></row>", "</r>"); }

void IndentText(benchmark::State& state, std::string (*make)()) {
  const std::string text = make();
  for (auto _ : state) benchmark::DoNotOptimize(Indent(text).text.size());
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

/// Every byte is looked at once and copied.
void BareWalk(benchmark::State& state) {
  const std::string text = Json();
  for (auto _ : state) {
    std::string copy;
    copy.reserve(text.size());
    std::size_t brackets = 0;
    for (const char character : text) {
      brackets += character == '{' || character == '[' ? 1U : 0U;
      copy += character;
    }
    benchmark::DoNotOptimize(copy.size() + brackets);
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * text.size()));
}

BENCHMARK(OpenHex)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(IndentText, json, &Json)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(IndentText, xml, &Xml)->Unit(benchmark::kMillisecond);
BENCHMARK(BareWalk)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tessel::bench
