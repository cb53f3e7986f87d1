#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "data/cursor/DataAccessObjects.h"
#include "desktop/QtDesktop.h"
#include "logic/program/Global.h"
#include "logic/program/dlgAsync.h"
#include "logic/query/completion/vocab.h"
#include "system/PosixFiles.h"

namespace tessel::bench {

/// The program's parts on a real desktop, with its frame shown and nothing asked of the user.
struct Parts {
  explicit Parts(QtDesktop& qtDesktop);

  QtDesktop& desktop;
  PosixFiles files;
  DataAccessObjects data;
  Global global;
  Vocabulary vocabulary;
  std::unique_ptr<Window> frame;
  dlgAsync async;
};

/// Time since it was made.
class StopWatch {
 public:
  [[nodiscard]] double Milliseconds() const {
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start_)
        .count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// Milliseconds that the calling thread was at work, without its waits for a processor.
[[nodiscard]] double BusyMilliseconds();

[[nodiscard]] double Median(std::vector<double> values);
/// Megabytes that the process holds in memory now.
[[nodiscard]] double ResidentMegabytes();
/// Prints one line: a name and its figures.
void Report(const std::string& what, const std::string& figures);

/// The schemas of a database: the queries alone and the whole way into the tree.
void MeasureSchema(Parts& parts, const std::string& connectionString);
/// From a completion key to the painted list.
void MeasureCompletion(Parts& parts, int words);
/// From a key to the painted text of so many megabytes, and finding in it.
void MeasureEditor(Parts& parts, int megabytes);

}  // namespace tessel::bench
