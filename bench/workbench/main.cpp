// Measures the sidebar, the completion list and the editor on real windows.
//   workbench_bench [completion] [editor] [connection string]...
// Without a name it measures completion and editor. The database of each connection string gets
// 10,000 tables of 20 fields when it has fewer.

#include <algorithm>
#include <string_view>
#include <vector>

#include "bench/workbench/Parts.h"

int main(int argc, char* argv[]) {
  tessel::QtDesktop desktop(argc, argv);
  std::vector<std::string_view> wanted(argv + 1, argv + argc);
  const auto takes = [&](std::string_view name) { return std::erase(wanted, name) > 0; };
  bool completion = takes("completion");
  bool editor = takes("editor");
  if (!completion && !editor && wanted.empty()) completion = editor = true;

  tessel::bench::Parts parts(desktop);
  for (const int words : {1'000, 20'000, 200'000})
    if (completion) tessel::bench::MeasureCompletion(parts, words);
  for (const int megabytes : {1, 50})
    if (editor) tessel::bench::MeasureEditor(parts, megabytes);
  for (const std::string_view connection : wanted)
    tessel::bench::MeasureSchema(parts, std::string(connection));
  return 0;
}
