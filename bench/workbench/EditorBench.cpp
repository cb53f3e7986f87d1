#include <QAbstractScrollArea>

#include <algorithm>
#include <cstdio>

#include "bench/workbench/Parts.h"
#include "bench/workbench/QueryWindow.h"
#include "logic/text/TextDocument.h"

namespace tessel::bench {

namespace {

constexpr int rounds = 25;

std::string ManyStatements(int megabytes) {
  const std::string line = "insert into orders (id, name, total) values (17, 'a name', (1 + 2));\n";
  std::string text;
  const auto size = static_cast<std::size_t>(megabytes) * 1'000'000;
  text.reserve(size + line.size());
  while (text.size() < size) text += line;
  return text;
}

/// From a key to the next painting of the text, and until nothing is left to be done.
class KeyWatch {
 public:
  KeyWatch(Parts& parts, QAbstractScrollArea& editor)
      : parts_(parts), editor_(editor), paint_(*editor.viewport()) {}

  void Type(int qtKey, const QString& text) {
    paint_.painted = false;
    const StopWatch watch;
    Press(editor_, qtKey, Qt::NoModifier, text);
    while (!paint_.painted) parts_.desktop.ProcessPending();
    painted_.push_back(watch.Milliseconds());
    parts_.desktop.ProcessPending();
    done_.push_back(watch.Milliseconds());
  }

  void Tell(const std::string& what) {
    char figures[128];
    std::snprintf(figures, sizeof figures,
                  "key to paint %.1f ms (most %.1f), with all that follows %.1f ms (most %.1f)",
                  Median(painted_), *std::ranges::max_element(painted_), Median(done_),
                  *std::ranges::max_element(done_));
    Report(what, figures);
  }

 private:
  Parts& parts_;
  QAbstractScrollArea& editor_;
  PaintWatch paint_;
  std::vector<double> painted_;
  std::vector<double> done_;
};

void MeasureTyping(Parts& parts, QueryWindow& query, const std::string& text, bool wraps) {
  EditorBox& box = query.main.Editor();
  auto& editor = *query.Root().findChild<QAbstractScrollArea*>("txtQuery");
  box.SetRightMargin(wraps ? 0 : noWrapMargin);
  box.SetText(text);
  parts.desktop.ProcessPending();
  struct Place {
    const char* name;
    std::size_t at;
  };
  for (const Place place :
       {Place{"start", 0}, Place{"middle", text.size() / 2}, Place{"end", text.size()}}) {
    const StopWatch go;
    box.Select(place.at, 0);
    parts.desktop.ProcessPending();
    const double going = go.Milliseconds();
    KeyWatch keys(parts, editor);
    for (int i = 0; i < rounds; ++i) keys.Type(Qt::Key_X, "x");
    for (int i = 0; i < rounds; ++i) keys.Type(Qt::Key_ParenLeft, "(");
    for (int i = 0; i < rounds; ++i) keys.Type(Qt::Key_Return, "\r");
    const std::string what = std::to_string(text.size() / 1'000'000) + " MB" +
                             (wraps ? ", wrapped, " : ", ") + place.name;
    keys.Tell(what + " (gone to in " + std::to_string(static_cast<int>(going)) + " ms)");
  }
}

/// The last word of the text is looked for from its beginning.
void MeasureFinding(Parts& parts, QueryWindow& query, const std::string& text,
                    const std::string& what, bool expression) {
  Window& window = query.main.TheWindow();
  EditorBox& box = query.main.Editor();
  box.SetText(text + "needle");
  query.main.Find().Open(false);
  window.Find<CheckBox>("chkFindRegex").SetValue(expression);
  window.Find<TextBox>("txtFind").SetText(what);
  const StopWatch watch;
  double stall = 0;
  StopWatch slice;
  query.main.Find().FindNext();
  while (query.main.Find().Searching()) {
    stall = std::max(stall, slice.Milliseconds());
    slice = StopWatch();
    parts.desktop.ProcessPending();
  }
  stall = std::max(stall, slice.Milliseconds());
  char figures[128];
  std::snprintf(figures, sizeof figures, "%.0f ms, longest slice %.1f ms%s", watch.Milliseconds(),
                stall, box.SelLength() > 0 ? "" : ", not found");
  Report("find \"" + what + "\"", figures);
}

}  // namespace

void MeasureEditor(Parts& parts, int megabytes) {
  const std::string text = ManyStatements(megabytes);
  QueryWindow query(parts);
  MeasureTyping(parts, query, text, false);
  MeasureTyping(parts, query, text, true);
  query.main.Editor().SetRightMargin(noWrapMargin);
  MeasureFinding(parts, query, text, "needle", false);
  MeasureFinding(parts, query, text, "(needle|nadel)$", true);
  MeasureFinding(parts, query, text, "i.*n\\w+edle", true);
  query.main.Editor().SetText("");
}

}  // namespace tessel::bench
