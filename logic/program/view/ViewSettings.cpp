#include "logic/program/view/ViewSettings.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr std::uint64_t mostBytes = 100'000;

std::optional<int> NumberIn(std::string_view text) {
  if (text.ends_with('\r')) text.remove_suffix(1);
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::string ViewSettings::Path() const { return global_.BesideExecutable("Tessel.view.txt"); }

ViewSettings::Numbers ViewSettings::Read() const {
  Numbers numbers;
  std::string content;
  try {
    if (global_.TheFiles().FileExists(Path()) && global_.TheFiles().Size(Path()) < mostBytes)
      content = global_.TheFiles().ReadWhole(Path());
  } catch (const Error&) {
    return numbers;
  }
  for (std::string_view rest = content; !rest.empty();) {
    const std::string_view line = rest.substr(0, rest.find('\n'));
    rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) continue;
    if (const auto number = NumberIn(line.substr(equals + 1)))
      numbers.insert_or_assign(std::string(line.substr(0, equals)), *number);
  }
  return numbers;
}

int ViewSettings::Number(std::string_view name, int otherwise) const {
  const Numbers numbers = Read();
  const auto found = numbers.find(name);
  return found == numbers.end() ? otherwise : found->second;
}

void ViewSettings::SetNumbers(const Numbers& changed) const {
  constexpr int patience = 200;
  try {
    const auto lock = global_.TheFiles().Lock(Path(), patience);
    Numbers numbers = Read();
    const Numbers before = numbers;
    for (const auto& [name, number] : changed) numbers.insert_or_assign(name, number);
    if (numbers == before) return;
    std::string content;
    for (const auto& [key, value] : numbers)
      content.append(key).append("=").append(std::to_string(value)).append("\n");
    global_.TheFiles().ReplaceWhole(Path(), content, false);
  } catch (const Error&) {
    return;  // It looks as it does until the program ends.
  }
}

}  // namespace tessel
