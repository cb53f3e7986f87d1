#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <string>

namespace tessel {

/// Appends a number to `out` as AppendText does.
template <class Number>
void AppendNumber(Number number, std::string& out) {
  std::array<char, 40> buffer;
  const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  out.append(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
}

}  // namespace tessel
