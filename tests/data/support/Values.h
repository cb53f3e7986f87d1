#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "contract/base/Value.h"

namespace tessel::test {

// Short ways to write a value that a test gives or expects.
inline Value Text(std::string_view text) { return std::string(text); }
inline Value Whole(std::int64_t number) { return number; }
inline Value Digits(const char* digits) { return Decimal{digits}; }
inline Value At(const char* text) { return Moment{text}; }
inline Value Octets(std::string_view text) {
  const auto bytes = std::as_bytes(std::span(text));
  return Bytes(bytes.begin(), bytes.end());
}

}  // namespace tessel::test
