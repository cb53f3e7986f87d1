// Any bytes as the text of a query: the scanner of tags must agree with the slow one.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/TagScannerProperty.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string complaint = tessel::test::ComplaintAboutTags(text);
  if (complaint.empty()) return 0;
  std::fprintf(stderr, "%s\n", complaint.c_str());
  std::abort();
}
