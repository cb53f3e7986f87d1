#include "bench/PeakMemory.h"

#include <malloc.h>

#include <fstream>
#include <string>

namespace tessel::bench {

namespace {

/// A line of the process's status in kilobytes, in bytes.
double StatusBytes(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string word;
  while (status >> word)
    if (word == name + ":") break;
  double kilobytes = 0;
  status >> kilobytes;
  return kilobytes * 1024;
}

}  // namespace

PeakMemory::PeakMemory() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << 5;
  before_ = StatusBytes("VmRSS");
}

double PeakMemory::Bytes() const { return StatusBytes("VmHWM") - before_; }

}  // namespace tessel::bench
