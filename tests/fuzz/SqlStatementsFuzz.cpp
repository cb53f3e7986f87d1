// Any bytes as a text of SQL: its statements must be whole in every dialect.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/support/SqlStatementsProperty.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const std::string complaint = tessel::test::ComplaintAboutStatements(text);
  if (complaint.empty()) return 0;
  std::fprintf(stderr, "%s\n", complaint.c_str());
  std::abort();
}
