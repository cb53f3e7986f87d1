#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Value.h"

namespace tessel {

/// One named value. The name keeps the case in which it was first set, and is shown to the user as
/// it is, in English.
struct Property {
  std::string name;
  Value value;
};

/// Named values of a provider or recordset, in a fixed order. Names are compared without regard to
/// ASCII case. They are few, a few dozen at most, and every look-up goes through all of them. A
/// copy is independent. No locking: the data layer changes the properties that it shows on the UI
/// thread only.
class Properties {
 public:
  /// Adds at the end, or replaces the value of a name that is there, in its place. A null value is
  /// a value: the name is there then.
  void Set(std::string_view name, Value value);
  /// Takes all away; what Find and At gave is no longer valid.
  void Clear() { items_.clear(); }

  /// Null when there is none of that name: a provider sets only what it knows. Valid until the
  /// properties change.
  [[nodiscard]] const Property* Find(std::string_view name) const;
  /// The value of `name`; raises Error(itemNotFound) when there is none. Valid until the properties
  /// change.
  [[nodiscard]] const Value& At(std::string_view name) const;
  /// A number or boolean read as a whole number, true as 1; `fallback` when missing or of another
  /// kind. Only std::int64_t counts as a number: what sets a property that is asked for so uses it.
  [[nodiscard]] std::int64_t Number(std::string_view name, std::int64_t fallback) const;

  /// Names, those whose value is null too.
  [[nodiscard]] std::size_t Count() const { return items_.size(); }
  // For loops over all of them, in the order in which they were added, each a `const Property&`.
  // Valid until the properties change.
  [[nodiscard]] auto begin() const { return items_.begin(); }
  [[nodiscard]] auto end() const { return items_.end(); }

 private:
  /// No name twice.
  std::vector<Property> items_;
};

}  // namespace tessel
