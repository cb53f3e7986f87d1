#include <QAbstractItemView>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "bench/workbench/Parts.h"
#include "bench/workbench/QueryWindow.h"

namespace tessel::bench {

namespace {

constexpr int rounds = 9;

WordList ManyWords(int count) {
  WordList words;
  words.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    words.push_back("customer_order_" + std::to_string((i * 7919) % count) + "_field");
  return words;
}

/// A way to ask for the words, each of which finds all of them.
struct Way {
  const char* name;
  const char* typed;
  Qt::KeyboardModifiers modifiers;
};

const Way ways[] = {{" words", "", Qt::ControlModifier},
                    {" words by initials", "", Qt::ControlModifier | Qt::AltModifier},
                    {" words by typed initials", "co", Qt::ControlModifier | Qt::AltModifier}};

}  // namespace

void MeasureCompletion(Parts& parts, int words) {
  QueryWindow query(parts);
  frmMain& main = query.main;
  Vocabulary::ListNamed(parts.vocabulary.Fields(), "bench") = ManyWords(words);
  QWidget& root = query.Root();
  auto& text = *root.findChild<QWidget*>("txtQuery");
  auto& list = *root.findChild<QAbstractItemView*>("lstOptions");
  PaintWatch paint(*list.viewport());
  auto& txtQuery = main.TheWindow().Find<RichTextBox>("txtQuery");
  for (const Way& way : ways) {
    txtQuery.SetText(way.typed);
    txtQuery.Select(std::strlen(way.typed), 0);
    parts.desktop.ProcessPending();
    std::vector<double> opening;
    std::vector<double> busy;
    std::vector<double> closing;
    for (int round = 0; round < rounds; ++round) {
      paint.painted = false;
      const double busyBefore = BusyMilliseconds();
      const StopWatch watch;
      Press(text, Qt::Key_F, way.modifiers);
      while (!paint.painted) parts.desktop.ProcessPending();
      opening.push_back(watch.Milliseconds());
      busy.push_back(BusyMilliseconds() - busyBefore);
      const StopWatch end;
      Press(list, Qt::Key_Escape, Qt::NoModifier);
      parts.desktop.ProcessPending();
      closing.push_back(end.Milliseconds());
    }
    char figures[128];
    std::snprintf(figures, sizeof figures,
                  "key to painted list %.1f ms (most %.1f), own time %.1f ms, closed in %.1f ms",
                  Median(opening), *std::ranges::max_element(opening), Median(busy),
                  Median(closing));
    Report(std::to_string(words) + way.name, figures);
  }
  Vocabulary::RemoveList(parts.vocabulary.Fields(), "bench");
}

}  // namespace tessel::bench
