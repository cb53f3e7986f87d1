#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "contract/system/WorkLine.h"
#include "logic/results/stream/RecordBatch.h"

namespace tessel {

/// What takes records, batch by batch in their order, on the thread of a line of work.
class BatchSink {
 public:
  BatchSink() = default;
  BatchSink(const BatchSink&) = delete;
  BatchSink& operator=(const BatchSink&) = delete;
  virtual ~BatchSink() = default;

  virtual void Take(const RecordBatch& batch) = 0;

  /// Whether a batch may also be made a text by another thread meanwhile (Formatted), and be taken
  /// as that in its turn.
  [[nodiscard]] virtual bool TakesText() const { return false; }
  [[nodiscard]] virtual std::string Formatted(const RecordBatch& /*batch*/) const { return {}; }
  virtual void TakeText(const RecordBatch& /*batch*/, std::string_view /*text*/) {}
};

/// Gives batches to a line of work, and helps it where it has enough to do. No more than a few
/// batches are under way at a time. UI thread.
class BatchLine {
 public:
  /// `yield` lets the interface live; false: the user has cancelled. All of them outlive this
  /// object.
  BatchLine(WorkLine& line, BatchSink& sink, std::function<bool()> yield);

  /// Gives a batch, and waits while too many are under way. False once the user has cancelled.
  /// Raises what failed.
  bool Give(const std::shared_ptr<const RecordBatch>& batch);
  /// Waits until all is done that was given, even where the user cancels. False when he has. Raises
  /// what failed.
  bool Finish();

 private:
  bool WaitFor(std::size_t pieces);

  WorkLine& line_;
  BatchSink& sink_;
  std::function<bool()> yield_;
};

}  // namespace tessel
