#include "system/ThreadLine.h"

#include <atomic>
#include <latch>
#include <stdexcept>
#include <string>
#include <thread>

#include <gtest/gtest.h>

namespace tessel::test {

namespace {

constexpr int longEnough = 60'000;

TEST(ThreadLineTest, DoesItsPiecesInTheirOrderOnOneOtherThread) {
  std::string done;
  std::thread::id thread;
  ThreadLine line;
  for (char c = 'a'; c <= 'e'; ++c)
    line.Add([&, c] {
      thread = std::this_thread::get_id();
      done += c;
    });
  EXPECT_TRUE(line.Wait(0, longEnough));
  EXPECT_EQ(done, "abcde");
  EXPECT_NE(thread, std::this_thread::get_id());
  EXPECT_EQ(line.Left(), 0U);
}

TEST(ThreadLineTest, WaitsNoLongerThanItWasTold) {
  std::latch goOn(1);
  ThreadLine line;
  line.Add([&] { goOn.wait(); });
  line.Add([] {});
  EXPECT_TRUE(line.Wait(2, 0));
  EXPECT_FALSE(line.Wait(1, 1));
  EXPECT_EQ(line.Left(), 2U);
  goOn.count_down();
  EXPECT_TRUE(line.Wait(0, longEnough));
}

TEST(ThreadLineTest, RaisesWhatAPieceRaisedAndDropsTheRest) {
  bool ran = false;
  ThreadLine line;
  line.Add([] { throw std::runtime_error("the disk is full"); });
  line.Add([&] { ran = true; });
  try {
    while (line.Wait(0, longEnough)) {
    }
    ADD_FAILURE() << "nothing was raised";
  } catch (const std::runtime_error& error) {
    EXPECT_STREQ(error.what(), "the disk is full");
  }
  line.Add([&] { ran = true; });
  EXPECT_THROW(line.Wait(0, longEnough), std::runtime_error);
  EXPECT_FALSE(ran);
}

TEST(ThreadLineTest, ItsEndDropsWhatWaitsAndLetsTheLastPieceEnd) {
  std::latch began(1);
  std::latch goOn(1);
  std::atomic<bool> ended = false;
  bool ran = false;
  std::thread helper;
  {
    ThreadLine line;
    line.Add([&] {
      began.count_down();
      goOn.wait();
      ended = true;
    });
    line.Add([&] { ran = true; });
    began.wait();
    helper = std::thread([&] {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      goOn.count_down();
    });
  }
  EXPECT_TRUE(ended);
  EXPECT_FALSE(ran);
  helper.join();
}

}  // namespace

}  // namespace tessel::test
