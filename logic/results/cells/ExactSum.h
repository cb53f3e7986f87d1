#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

namespace tessel {

/// The sum of numbers written as decimals, exact whatever their length: 0.1 and 0.2 are 0.3.
class ExactSum {
 public:
  /// Digits with an optional sign, point and exponent, as AppendText writes numbers. False: it is
  /// none that can be added, such as "NaN", and changes nothing.
  bool Add(std::string_view number);
  void Add(std::int64_t number);
  /// "-12.5"; "0" for nothing.
  [[nodiscard]] std::string Text() const;

 private:
  /// Nine digits each: number 0 stands just before the point. Carries are left for Text.
  std::map<int, std::int64_t> parts_;
};

}  // namespace tessel
