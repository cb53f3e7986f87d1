#include "logic/results/stream/BatchLine.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>

#include "system/ThreadLine.h"

namespace tessel::test {
namespace {

/// Gathers the numbers of batches; slow where it is told to be.
class Numbers final : public BatchSink {
 public:
  explicit Numbers(std::chrono::milliseconds pause = {}) : pause_(pause) {}

  void Take(const RecordBatch& batch) override {
    std::this_thread::sleep_for(pause_);
    if (batch.first == failAt) throw std::runtime_error("full");
    text += std::to_string(batch.first) + " ";
  }
  [[nodiscard]] bool TakesText() const override { return takesText; }
  [[nodiscard]] std::string Formatted(const RecordBatch& batch) const override {
    ++aside;
    return "(" + std::to_string(batch.first) + ") ";
  }
  void TakeText(const RecordBatch& /*batch*/, std::string_view formatted) override {
    text += formatted;
  }

  std::string text;
  bool takesText = true;
  std::int64_t failAt = -1;
  mutable int aside = 0;

 private:
  std::chrono::milliseconds pause_;
};

std::shared_ptr<RecordBatch> Batch(std::int64_t number) {
  auto batch = std::make_shared<RecordBatch>();
  batch->first = number;
  return batch;
}

std::string WithoutMarks(std::string text) {
  std::erase(text, '(');
  std::erase(text, ')');
  return text;
}

TEST(BatchLineTest, KeepsTheOrderWhoeverFormats) {
  Numbers sink(std::chrono::milliseconds(2));
  ThreadLine work;
  BatchLine line(work, sink, [] { return true; });
  std::string expected;
  for (int i = 0; i < 30; ++i) {
    EXPECT_TRUE(line.Give(Batch(i)));
    expected += std::to_string(i) + " ";
  }
  EXPECT_TRUE(line.Finish());
  EXPECT_EQ(WithoutMarks(sink.text), expected);
  EXPECT_GT(sink.aside, 0) << "a slow line is helped";
}

TEST(BatchLineTest, ALargeBatchIsLeftToTheLine) {
  Numbers sink(std::chrono::milliseconds(2));
  ThreadLine work;
  BatchLine line(work, sink, [] { return true; });
  for (int i = 0; i < 10; ++i) {
    const auto batch = Batch(i);
    batch->bytes = 100'000'000;
    line.Give(batch);
  }
  line.Finish();
  EXPECT_EQ(sink.aside, 0);
}

TEST(BatchLineTest, NoMoreThanAFewAreUnderWay) {
  Numbers sink(std::chrono::milliseconds(5));
  sink.takesText = false;
  ThreadLine work;
  int yields = 0;
  std::size_t most = 0;
  BatchLine line(work, sink, [&] {
    most = std::max(most, work.Left());
    ++yields;
    return true;
  });
  for (int i = 0; i < 20; ++i) {
    line.Give(Batch(i));
    most = std::max(most, work.Left());
  }
  line.Finish();
  EXPECT_LE(most, 5U);
  EXPECT_GT(yields, 0) << "the interface lives while it waits";
}

TEST(BatchLineTest, TellsOfACancelAndStillEndsInOrder) {
  Numbers sink(std::chrono::milliseconds(10));
  sink.takesText = false;
  ThreadLine work;
  BatchLine line(work, sink, [] { return false; });
  int given = 0;
  while (line.Give(Batch(given))) ++given;
  line.Finish();
  std::string expected;
  for (int i = 0; i <= given; ++i) expected += std::to_string(i) + " ";
  EXPECT_EQ(sink.text, expected);
}

TEST(BatchLineTest, RaisesWhatTheSinkRaised) {
  Numbers sink;
  sink.failAt = 3;
  sink.takesText = false;
  ThreadLine work;
  BatchLine line(work, sink, [] { return true; });
  EXPECT_THROW(
      {
        for (int i = 0; i < 1000; ++i) line.Give(Batch(i));
        line.Finish();
      },
      std::runtime_error);
  EXPECT_EQ(sink.text, "0 1 2 ");
}

}  // namespace
}  // namespace tessel::test
