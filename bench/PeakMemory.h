#pragma once

namespace tessel::bench {

/// The most memory that a piece of work takes beyond what there is when this is made.
class PeakMemory {
 public:
  PeakMemory();
  [[nodiscard]] double Bytes() const;

 private:
  double before_ = 0;
};

}  // namespace tessel::bench
