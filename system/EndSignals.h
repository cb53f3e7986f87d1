#pragma once

namespace tessel {

/// Takes the signals by which the system ends the program (SIGTERM, SIGINT, SIGHUP unless it was
/// ignored): the program then has ten seconds to end in order before the system ends it. One
/// object at a time; its end gives the signals back.
class EndSignals {
 public:
  /// Raises std::system_error when the system has no descriptors left.
  EndSignals();
  ~EndSignals();
  EndSignals(const EndSignals&) = delete;
  EndSignals& operator=(const EndSignals&) = delete;

  /// A descriptor that can be read from once such a signal has come.
  [[nodiscard]] int Descriptor() const { return ends_[0]; }

 private:
  int ends_[2] = {-1, -1};
};

}  // namespace tessel
