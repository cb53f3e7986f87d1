#include "tests/support/TestStop.h"

#include <gtest/gtest.h>

namespace tessel::test {

void StopTest(const std::string& reason) {
  ADD_FAILURE() << reason;
  throw TestStop{reason};
}

}  // namespace tessel::test
