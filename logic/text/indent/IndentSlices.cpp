#include "logic/text/indent/IndentSlices.h"

#include <cstdint>
#include <utility>

namespace tessel {

namespace {

constexpr int betweenSlices = 1;  ///< Milliseconds, as the next one.
constexpr std::int64_t sliceMilliseconds = 8;
constexpr std::size_t stepBytes = 64U << 10U;

}  // namespace

IndentSlices::IndentSlices(Timer& timer, const Clock& clock) : timer_(timer), clock_(clock) {
  timer_.SetInterval(betweenSlices);
  timer_.Tick = [this] { RunSlice(); };
}

void IndentSlices::Start(std::string_view text) {
  work_ = StartIndenting(text);
  timer_.SetEnabled(work_ != nullptr);
}

void IndentSlices::Stop() {
  timer_.SetEnabled(false);
  work_.reset();
}

void IndentSlices::RunSlice() {
  if (work_ == nullptr) return timer_.SetEnabled(false);
  const std::int64_t start = clock_.Milliseconds();
  bool more = true;
  while (more && clock_.Milliseconds() - start < sliceMilliseconds) more = work_->Step(stepBytes);
  if (more) return Progress(work_->Percent());
  IndentedText indented = work_->Result();
  work_.reset();
  timer_.SetEnabled(false);
  Ended(std::move(indented));
}

}  // namespace tessel
