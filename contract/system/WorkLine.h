#pragma once

#include <cstddef>
#include <functional>

namespace tessel {

/// Pieces of work that are done one after the other on a thread of their own, in the order in which
/// they were given, while the thread that gives them goes on. All members are called on that one
/// thread, the UI thread.
///
/// What a piece uses must live until it is done or dropped. A piece that raises is the last one:
/// those behind it are dropped without being run, and so is what is added later.
class WorkLine {
 public:
  WorkLine() = default;
  WorkLine(const WorkLine&) = delete;
  WorkLine& operator=(const WorkLine&) = delete;
  /// Drops what has not begun, and waits for the piece that has.
  virtual ~WorkLine() = default;

  /// Puts a piece at the end of the line.
  virtual void Add(std::function<void()> piece) = 0;
  /// How many pieces are not done yet, the one that runs among them.
  [[nodiscard]] virtual std::size_t Left() const = 0;
  /// Waits until no more than `pieces` are left, but at most `milliseconds`, and says whether it is
  /// so. Raises what a piece has raised, once it has.
  virtual bool Wait(std::size_t pieces, int milliseconds) = 0;
};

}  // namespace tessel
