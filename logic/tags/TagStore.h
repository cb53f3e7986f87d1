#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// The named tags of one run of the program and the values that each remembers. A name means the
/// same tag in upper and lower case. Not kept between runs.
class TagStore {
 public:
  /// Oldest first; the last one is the tag's current value. Empty: never given a value.
  using Values = std::vector<std::string>;

  /// What a tag is filed under: its name in upper case.
  [[nodiscard]] static std::string KeyOf(std::string_view name);

  [[nodiscard]] bool Has(std::string_view name) const;
  /// Adds a tag without a value. Raises Error(application) when the name is taken.
  void Add(std::string_view name);
  /// The tag keeps its values. Raises Error(application), and changes nothing, when there is no tag
  /// of the old name or another one of the new name.
  void Rename(std::string_view oldName, std::string_view newName);
  /// Removing a tag that is not there does nothing.
  void Remove(std::string_view name);

  /// Valid until the tag changes; empty for a tag that is not there.
  [[nodiscard]] const Values& ValuesOf(std::string_view name) const;
  /// Makes `value` the current value: a value remembered before moves to the end, the others keep
  /// their order. Raises Error(application) when there is no such tag.
  void SetCurrent(std::string_view name, std::string value);

 private:
  std::map<std::string, Values, std::less<>> tags_;
};

}  // namespace tessel
