// Measures the sidebar, the completion list and the editor on real windows.
//   workbench_bench [connection string]...
// The database of each connection string gets 10,000 tables of 20 fields when it has fewer.

#include "bench/workbench/Parts.h"

int main(int argc, char* argv[]) {
  tessel::QtDesktop desktop(argc, argv);
  tessel::bench::Parts parts(desktop);
  for (const int words : {1'000, 20'000, 200'000}) tessel::bench::MeasureCompletion(parts, words);
  for (const int megabytes : {1, 50}) tessel::bench::MeasureEditor(parts, megabytes);
  for (int i = 1; i < argc; ++i) tessel::bench::MeasureSchema(parts, argv[i]);
  return 0;
}
