#pragma once

#include <map>
#include <string>
#include <string_view>

#include "logic/program/Global.h"

namespace tessel {

/// What the program remembers of how it looks, such as the zoom of a text: whole numbers by name,
/// in the file "Tessel.view.txt" beside the executable, a line "name=number" each. Nothing depends
/// on it: a file that is missing, damaged or cannot be written is no failure, and what is no line
/// of that kind is dropped when the file is written the next time.
class ViewSettings {
 public:
  explicit ViewSettings(const Global& global) : global_(global) {}

  /// The number of that name as the file has it now; `otherwise` when it has none.
  [[nodiscard]] int Number(std::string_view name, int otherwise) const;
  /// Writes the file anew, with what another running program has written meanwhile. `name` holds
  /// neither "=" nor a line end.
  void SetNumber(std::string_view name, int number) const {
    SetNumbers({{std::string(name), number}});
  }
  using Numbers = std::map<std::string, int, std::less<>>;
  /// The same for several, which are written at once; not at all when the file has them already.
  void SetNumbers(const Numbers& numbers) const;

 private:
  [[nodiscard]] Numbers Read() const;
  [[nodiscard]] std::string Path() const;

  const Global& global_;
};

}  // namespace tessel
