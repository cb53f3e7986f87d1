#include <benchmark/benchmark.h>

#include <Qsci/qsciscintilla.h>

#include <QApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchDesktop.h"
#include "bench/PeakMemory.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/text/TextDocument.h"

namespace tessel::bench {

namespace {

/// A text window on the screen, if there is one.
struct Viewer {
  QtDesktop& desktop = TheDesktop();
  std::unique_ptr<Window> window = desktop.MakeWindow("frmText");
  RichTextBox& box = window->Find<RichTextBox>("txtText");

  Viewer() {
    box.SetLocked(true);
    window->Show();
    Settle();
  }
  void Settle() { desktop.ProcessPending(); }
  [[nodiscard]] static QsciScintilla& Editor() {
    for (QWidget* widget : QApplication::allWidgets())
      if (auto* editor = qobject_cast<QsciScintilla*>(widget)) return *editor;
    std::abort();
  }
};

Viewer& TheViewer() {
  static auto* viewer = new Viewer;
  return *viewer;
}

/// So many megabytes of CSV in lines of 110 bytes.
std::string Lines(std::size_t megabytes) {
  const std::string line = std::string(108, 'x') + "\r\n";
  std::string text;
  text.reserve(megabytes * 1'000'000 + line.size());
  while (text.size() < megabytes * 1'000'000) text += line;
  return text;
}

/// So many megabytes of numbers in a single line, as a set for IN has them.
std::string OneLine(std::size_t megabytes) {
  std::string text = "(";
  for (int n = 1; text.size() < megabytes * 1'000'000; ++n) text += std::to_string(n) + ", ";
  return text + "NULL)";
}

/// Until the first page is painted.
void Open(benchmark::State& state, std::string (*make)(std::size_t), int rightMargin) {
  Viewer& viewer = TheViewer();
  const std::string text = make(static_cast<std::size_t>(state.range(0)));
  viewer.box.SetRightMargin(rightMargin);
  const PeakMemory peak;
  for (auto _ : state) {
    viewer.box.SetText(text);
    Viewer::Editor().viewport()->repaint();
    state.PauseTiming();
    viewer.box.SetText("");
    state.ResumeTiming();
  }
  state.counters["peak/text"] = peak.Bytes() / static_cast<double>(text.size());
}
BENCHMARK_CAPTURE(Open, lines, Lines, noWrapMargin)
    ->Arg(1)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Open, oneLine, OneLine, noWrapMargin)
    ->Arg(1)
    ->Arg(8)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Open, wrappedLines, Lines, 0)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Open, wrappedLine, OneLine, 0)
    ->Arg(1)
    ->Arg(8)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);

/// To the end, to the middle and to the start, with what the editor does meanwhile.
void Scroll(benchmark::State& state, std::string (*make)(std::size_t), int rightMargin) {
  Viewer& viewer = TheViewer();
  viewer.box.SetRightMargin(rightMargin);
  viewer.box.SetText(make(static_cast<std::size_t>(state.range(0))));
  QScrollBar& bar = *Viewer::Editor().verticalScrollBar();
  for (auto _ : state) {
    for (const int place : {bar.maximum(), bar.maximum() / 2, 0}) {
      bar.setValue(place);
      Viewer::Editor().viewport()->repaint();
      viewer.Settle();
    }
  }
  viewer.box.SetText("");
}
BENCHMARK_CAPTURE(Scroll, lines, Lines, noWrapMargin)
    ->Arg(1)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scroll, oneLine, OneLine, noWrapMargin)
    ->Arg(1)
    ->Arg(100)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scroll, wrappedLines, Lines, 0)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Scroll, wrappedLine, OneLine, 0)->Arg(1)->Arg(100)->Unit(benchmark::kMillisecond);

struct Keys {
  int key;
  Qt::KeyboardModifiers with = Qt::ControlModifier;
};

void Press(const Keys& keys) {
  QKeyEvent press(QEvent::KeyPress, keys.key, keys.with);
  QApplication::sendEvent(&Viewer::Editor(), &press);
  Viewer::Editor().viewport()->repaint();
}

/// From keys to what the last one shows, with a text that has just come.
void PressKeys(benchmark::State& state, std::string (*make)(std::size_t), int rightMargin,
               const std::vector<Keys>& keys) {
  Viewer& viewer = TheViewer();
  const std::string text = make(static_cast<std::size_t>(state.range(0)));
  viewer.box.SetRightMargin(rightMargin);
  for (auto _ : state) {
    state.PauseTiming();
    viewer.box.SetText("");
    viewer.box.SetText(text);
    Viewer::Editor().viewport()->repaint();
    state.ResumeTiming();
    for (const Keys& each : keys) Press(each);
  }
  viewer.box.SetText("");
}

const std::vector<Keys> toEnd{{Qt::Key_End}};
const std::vector<Keys> endUpStart{
    {Qt::Key_End}, {Qt::Key_Up, Qt::NoModifier}, {Qt::Key_PageUp, Qt::NoModifier}, {Qt::Key_Home}};
const std::vector<Keys> pageDown{{Qt::Key_PageDown, Qt::NoModifier}};
const std::vector<Keys> all{{Qt::Key_A}};

BENCHMARK_CAPTURE(PressKeys, linesToEnd, Lines, noWrapMargin, toEnd)
    ->Arg(100)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PressKeys, wrappedLinesToEnd, Lines, 0, toEnd)
    ->Arg(10)
    ->Arg(100)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PressKeys, wrappedLinesEndUpStart, Lines, 0, endUpStart)
    ->Arg(100)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PressKeys, wrappedLinesPageDown, Lines, 0, pageDown)
    ->Arg(100)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(PressKeys, wrappedLinesAll, Lines, 0, all)
    ->Arg(100)
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

/// What Copy and Save take out of the window.
void TakeText(benchmark::State& state) {
  Viewer& viewer = TheViewer();
  viewer.box.SetText(Lines(static_cast<std::size_t>(state.range(0))));
  for (auto _ : state) benchmark::DoNotOptimize(viewer.box.Text());
  viewer.box.SetText("");
}
BENCHMARK(TakeText)->Arg(100)->Unit(benchmark::kMillisecond);

}  // namespace

}  // namespace tessel::bench
