#pragma once

#include <chrono>
#include <iostream>
#include <string_view>

namespace tessel::bench {

/// Tells a figure to the script that compares: one line of its name and its value.
template <class Value>
void Say(std::string_view name, const Value& value) {
  std::cout << name << ' ' << value << std::endl;
}

/// Time since it was made.
class Stopwatch {
 public:
  [[nodiscard]] double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
  }

 private:
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

/// The processor time that this thread has taken, in seconds.
[[nodiscard]] double ThreadSeconds();

/// The most memory that this process has held so far, and what it holds now, in bytes, as the
/// system counts them.
[[nodiscard]] double PeakBytes();
[[nodiscard]] double PresentBytes();

}  // namespace tessel::bench
