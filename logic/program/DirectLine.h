#pragma once

#include "contract/system/WorkLine.h"

namespace tessel {

/// Does each piece of work where and when it is given: for who has no other thread. What a piece
/// raises is raised at once, by Add.
class DirectLine final : public WorkLine {
 public:
  void Add(std::function<void()> piece) override { piece(); }
  [[nodiscard]] std::size_t Left() const override { return 0; }
  bool Wait(std::size_t /*pieces*/, int /*milliseconds*/) override { return true; }
};

}  // namespace tessel
