#include "bench/compare/Say.h"

#include <ctime>
#include <fstream>
#include <string>

namespace tessel::bench {

namespace {

/// A line of the process's status, which tells kilobytes.
double StatusBytes(std::string_view name) {
  constexpr double kilobyte = 1024;
  std::ifstream status("/proc/self/status");
  std::string word;
  double value = 0;
  while (status >> word)
    if (word == name && status >> value) return value * kilobyte;
  return 0;
}

}  // namespace

double ThreadSeconds() {
  timespec worked{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &worked);
  return static_cast<double>(worked.tv_sec) + static_cast<double>(worked.tv_nsec) / 1e9;
}

double PeakBytes() { return StatusBytes("VmHWM:"); }

double PresentBytes() { return StatusBytes("VmRSS:"); }

}  // namespace tessel::bench
