#include "system/EndSignals.h"

#include <csignal>

#include <poll.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace tessel {
namespace {

bool CanRead(int descriptor) {
  pollfd asked{descriptor, POLLIN, 0};
  return ::poll(&asked, 1, 0) == 1;
}

/// Takes back the time limit that a signal sets; false when none was set.
bool StopLimit() { return ::alarm(0) > 0; }

/// A shell may have started the tests with the signal ignored.
class EndSignalsTest : public ::testing::TestWithParam<int> {
 protected:
  EndSignalsTest() : before_(::signal(GetParam(), SIG_DFL)) {}
  ~EndSignalsTest() override { ::signal(GetParam(), before_); }

 private:
  void (*before_)(int);
};

TEST_P(EndSignalsTest, ASignalMakesTheDescriptorReadableAndSetsALimit) {
  const EndSignals signals;
  EXPECT_FALSE(CanRead(signals.Descriptor()));
  ASSERT_EQ(::raise(GetParam()), 0);
  EXPECT_TRUE(StopLimit());
  EXPECT_TRUE(CanRead(signals.Descriptor()));
}

TEST_P(EndSignalsTest, ItsEndGivesTheSignalBack) {
  { const EndSignals signals; }
  struct sigaction action {};
  ASSERT_EQ(::sigaction(GetParam(), nullptr, &action), 0);
  EXPECT_EQ(action.sa_handler, SIG_DFL);
}

INSTANTIATE_TEST_SUITE_P(Signals, EndSignalsTest, ::testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST(EndSignalsIgnoredTest, AHangUpThatWasIgnoredStaysIgnored) {
  const auto before = ::signal(SIGHUP, SIG_IGN);
  {
    const EndSignals signals;
    ASSERT_EQ(::raise(SIGHUP), 0);
    EXPECT_FALSE(CanRead(signals.Descriptor()));
  }
  EXPECT_EQ(::signal(SIGHUP, before), SIG_IGN);
}

}  // namespace
}  // namespace tessel
