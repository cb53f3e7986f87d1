#include "bench/workbench/Parts.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <fstream>

namespace tessel::bench {

Parts::Parts(QtDesktop& qtDesktop)
    : desktop(qtDesktop),
      data(desktop.Events()),
      global(Platform{desktop, data, files, "/nonexistent", "/nonexistent/Tessel", "", {}}),
      vocabulary(global),
      frame(desktop.MakeWindow("frmMDI")),
      async(desktop, *frame) {
  vocabulary.LoadVocabulary();
  frame->Show();
}

double BusyMilliseconds() {
  timespec time{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

double Median(std::vector<double> values) {
  std::ranges::sort(values);
  return values[values.size() / 2];
}

double ResidentMegabytes() {
  std::ifstream file("/proc/self/statm");
  double size = 0;
  double resident = 0;
  file >> size >> resident;
  return resident * static_cast<double>(sysconf(_SC_PAGESIZE)) / 1e6;
}

void Report(const std::string& what, const std::string& figures) {
  std::printf("%-34s %s\n", what.c_str(), figures.c_str());
  std::fflush(stdout);
}

}  // namespace tessel::bench
