#include "tests/data/providers/native/NativeFixture.h"

namespace tessel::test {

std::int64_t NativeTest::Affected(const std::string& sql) {
  return Run(sql).Operation().RecordsAffected();
}

std::vector<std::string> NativeTest::Reports() const {
  std::vector<std::string> texts;
  for (const ErrorInfo& record : connection_->Errors()) texts.push_back(record.description);
  return texts;
}

}  // namespace tessel::test
