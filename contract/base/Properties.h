#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Value.h"

namespace tessel {

struct Property {
  std::string name;
  Value value;
};

/// Named values of a provider or recordset, in a fixed order. Names are compared without regard to
/// ASCII case.
class Properties {
 public:
  /// Adds at the end, or replaces the value of a name that is there.
  void Set(std::string_view name, Value value);
  void Clear() { items_.clear(); }

  [[nodiscard]] const Property* Find(std::string_view name) const;
  /// The value of `name`; raises Error(itemNotFound) when there is none.
  [[nodiscard]] const Value& At(std::string_view name) const;
  /// A number or boolean read as a whole number; `fallback` when missing or of another kind.
  [[nodiscard]] std::int64_t Number(std::string_view name, std::int64_t fallback) const;

  [[nodiscard]] std::size_t Count() const { return items_.size(); }
  [[nodiscard]] auto begin() const { return items_.begin(); }
  [[nodiscard]] auto end() const { return items_.end(); }

 private:
  std::vector<Property> items_;
};

}  // namespace tessel
