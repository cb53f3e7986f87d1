#pragma once

#include <string>

namespace tessel::test {

/// Ends a test that has already failed. Not a std::exception, so that no handler of the program
/// takes it for a failure of its own.
struct TestStop {
  std::string reason;
};

/// Records a test failure with its reason and ends the test.
[[noreturn]] void StopTest(const std::string& reason);

}  // namespace tessel::test
