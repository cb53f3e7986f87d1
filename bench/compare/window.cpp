// Measurements that need the event loop of the desktop, each in a process of its own. Prints lines
// of a figure's name and its value.
// usage: compare_window stall|show <connection string> <query>
//        compare_window together <connection string> <query> <connections>

#include <QApplication>
#include <QKeyEvent>
#include <QTimer>
#include <algorithm>
#include <cstdlib>
#include <stdexcept>
#include <utility>
#include <vector>

#include "bench/compare/Say.h"
#include "data/cursor/DataAccessObjects.h"
#include "desktop/QtDesktop.h"
#include "desktop/grid/RecordGrid.h"
#include "tests/support/DataSteps.h"

namespace tessel::bench {

namespace {

constexpr double second = 1;
constexpr double longest = 600 * second;

/// Beats once a millisecond as long as the event loop comes round, and keeps the longest time
/// between two beats; and the most that this thread itself worked between two. What the first has
/// more than the second the thread was ready and others had the processors.
class Heartbeat {
 public:
  Heartbeat() {
    timer_.setTimerType(Qt::PreciseTimer);
    timer_.setInterval(1);
    QObject::connect(&timer_, &QTimer::timeout, [this] { Beat(); });
    timer_.start();
  }
  void SayLongest() {
    Beat();
    Say("stall", longest_);
    Say("work", mostWork_);
  }

 private:
  void Beat() {
    longest_ = std::max(longest_, last_.Seconds());
    last_ = Stopwatch();
    const double before = std::exchange(worked_, ThreadSeconds());
    mostWork_ = std::max(mostWork_, worked_ - before);
  }

  QTimer timer_;
  Stopwatch last_;
  double worked_ = ThreadSeconds();
  double longest_ = 0;
  double mostWork_ = 0;
};

/// Lets the event loop run until `QApplication::exit`, or for so many seconds.
void RunFor(double seconds) {
  QTimer end;
  end.setSingleShot(true);
  QObject::connect(&end, &QTimer::timeout, [] { QApplication::exit(); });
  end.start(static_cast<int>(seconds * 1000));
  QApplication::exec();
}

/// Ends RunFor when a widget has been painted.
class PaintWatch final : public QObject {
 public:
  explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() != QEvent::Paint || !std::exchange(waits_, false)) return false;
    QMetaObject::invokeMethod(
        this, [] { QApplication::exit(); }, Qt::QueuedConnection);
    return false;
  }
  /// Lets the event loop run until the widget has been painted once more.
  void Await() {
    waits_ = true;
    RunFor(longest);
    if (waits_) throw std::runtime_error("Nothing was painted.");
  }

 private:
  bool waits_ = false;
};

struct Program {
  DataAccessObjects data;
  std::shared_ptr<Connection> connection;
  std::string query;
  RecordGrid grid;

  Program(QtDesktop& desktop, const std::string& connectionString, std::string sql)
      : data(desktop.Events()), connection(data.CreateConnection()), query(std::move(sql)) {
    connection->SetConnectionString(connectionString);
    test::OpenNow(*connection);
    grid.resize(1000, 700);
    grid.show();
    RunFor(second / 2);
  }
};

/// The longest time that the event loop did not come round while a command was run and its rows
/// were fetched, to the last.
void MeasureStall(Program& program) {
  bool ended = false;
  Heartbeat heart;
  const auto operation = program.connection->StartQuery(program.query, LockType::ReadOnly);
  operation->Ended = [&] {
    ended = true;
    QApplication::exit();
  };
  RunFor(longest);
  if (!ended) throw std::runtime_error("It does not come to an end.");
  heart.SayLongest();
  Say("rows", operation->FirstRows()->RecordCount());
}

/// The query on each connection by itself, the slowest of them, and then on all at once.
void MeasureTogether(QtDesktop& desktop, const char* target, const char* query, int count) {
  DataAccessObjects data(desktop.Events());
  std::vector<std::shared_ptr<Connection>> connections;
  for (int i = 0; i < count; ++i) {
    connections.push_back(data.CreateConnection());
    connections.back()->SetConnectionString(target);
    test::OpenNow(*connections.back());
  }
  const auto run = [&](std::size_t first, std::size_t last) {
    std::vector<std::shared_ptr<QueryOperation>> operations;
    std::size_t ended = 0;
    const Stopwatch watch;
    for (std::size_t i = first; i < last; ++i) {
      operations.push_back(connections[i]->StartQuery(query, LockType::ReadOnly));
      operations.back()->Ended = [&] {
        if (++ended == operations.size()) QApplication::exit();
      };
    }
    RunFor(longest);
    if (ended != last - first) throw std::runtime_error("They do not come to an end.");
    return watch.Seconds();
  };
  double slowest = 0;
  for (std::size_t i = 0; i < connections.size(); ++i) slowest = std::max(slowest, run(i, i + 1));
  Heartbeat heart;
  Say("together", run(0, connections.size()));
  heart.SayLongest();
  Say("slowest", slowest);
}

/// From the moment that the grid is given the rows to its first picture, and from the keys Ctrl+End
/// to the picture of the last rows.
void MeasureShow(Program& program) {
  const std::shared_ptr<Recordset> rows = test::QueryNow(*program.connection, program.query);
  PaintWatch painted(*program.grid.viewport());
  const Stopwatch first;
  program.grid.Bind(rows);
  painted.Await();
  Say("first", first.Seconds());
  RunFor(second / 4);
  QKeyEvent key(QEvent::KeyPress, Qt::Key_End, Qt::ControlModifier);
  const Stopwatch end;
  QApplication::sendEvent(&program.grid, &key);
  painted.Await();
  Say("end", end.Seconds());
  if (program.grid.currentIndex().row() != program.grid.model()->rowCount() - 1)
    throw std::runtime_error("The grid is not at its end.");
}

int Measure(QtDesktop& desktop, int argc, char** argv) {
  const std::string what = argc >= 4 ? argv[1] : "";
  if (what == "together" && argc == 5) {
    MeasureTogether(desktop, argv[2], argv[3], std::atoi(argv[4]));
    return 0;
  }
  if (what != "stall" && what != "show") {
    std::cerr << "usage: compare_window stall|show <connection string> <query>\n"
                 "       compare_window together <connection string> <query> <connections>\n";
    return 2;
  }
  Program program(desktop, argv[2], argv[3]);
  if (what == "stall") MeasureStall(program);
  else MeasureShow(program);
  return 0;
}

}  // namespace

}  // namespace tessel::bench

int main(int argc, char* argv[]) {
  tessel::QtDesktop desktop(argc, argv);
  try {
    return tessel::bench::Measure(desktop, argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "compare_window: " << error.what() << '\n';
    return 1;
  }
}
