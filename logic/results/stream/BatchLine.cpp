#include "logic/results/stream/BatchLine.h"

#include <utility>

namespace tessel {

namespace {

constexpr std::size_t busy = 2;  ///< With so many pieces the line needs help.
constexpr std::size_t mostUnderWay = 4;
constexpr int patience = 5;  ///< Milliseconds between two looks at the interface.
constexpr std::size_t smallBytes = std::size_t{2} << 20U;  ///< Takes a few milliseconds.

}  // namespace

BatchLine::BatchLine(WorkLine& line, BatchSink& sink, std::function<bool()> yield)
    : line_(line), sink_(sink), yield_(std::move(yield)) {}

bool BatchLine::Give(const std::shared_ptr<const RecordBatch>& batch) {
  if (line_.Left() >= busy && sink_.TakesText() && batch->bytes < smallBytes)
    line_.Add([this, text = sink_.Formatted(*batch), batch] { sink_.TakeText(*batch, text); });
  else line_.Add([this, batch] { sink_.Take(*batch); });
  return WaitFor(mostUnderWay);
}

bool BatchLine::Finish() { return WaitFor(0); }

bool BatchLine::WaitFor(std::size_t pieces) {
  bool goesOn = true;
  while (!line_.Wait(pieces, patience)) goesOn = yield_() && goesOn;
  return goesOn;
}

}  // namespace tessel
