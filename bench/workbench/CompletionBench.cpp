#include <QAbstractItemView>
#include <QApplication>
#include <QKeyEvent>

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "bench/workbench/Parts.h"
#include "desktop/window/QtWindow.h"
#include "logic/query/frmMain.h"

namespace tessel::bench {

namespace {

constexpr int rounds = 9;

class NoHost : public QueryHost {
 public:
  void DoSQL(bool /*preview*/) override {}
  void FocusFirstRecordsWindow() override {}
  void FocusBrowser() override {}
};

/// Tells that a widget has been painted.
class PaintWatch : public QObject {
 public:
  explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
  bool painted = false;

 protected:
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    painted = painted || event->type() == QEvent::Paint;
    return false;
  }
};

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

void Press(QWidget& widget, int qtKey, Qt::KeyboardModifiers modifiers) {
  QKeyEvent down(QEvent::KeyPress, qtKey, modifiers);
  QCoreApplication::sendEvent(&widget, &down);
}

}  // namespace

void MeasureCompletion(Parts& parts, int words) {
  NoHost host;
  frmMain main(parts.global, host, parts.vocabulary);
  main.TheWindow().Show();
  main.FocusText();
  parts.desktop.ProcessPending();
  Vocabulary::ListNamed(parts.vocabulary.Fields(), "bench") = ManyWords(words);
  auto& root = dynamic_cast<QtWindow&>(main.TheWindow()).Root();
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
