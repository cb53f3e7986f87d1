#include "data/providers/ConnectionMode.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr const char* modeProperty = "Mode";

/// By the number of the mode.
constexpr std::string_view names[] = {"ReadWrite", "ReadOnly", "ReadWriteCreate"};

std::string NameOf(ConnectionMode mode) {
  return std::string(names[static_cast<std::size_t>(mode)]);
}

}  // namespace

ConnectionMode ToConnectionMode(const std::string& name, const std::string& source, bool hasFiles) {
  if (name.empty()) return ConnectionMode::ReadWrite;
  const auto* end = hasFiles ? std::end(names) : std::prev(std::end(names));
  const auto* found =
      std::find_if(names, end, [&](std::string_view known) { return EqualNoCase(known, name); });
  if (found != end) return static_cast<ConnectionMode>(found - names);
  throw Error(
      errorNumber::database, source,
      "There is no Mode '" + name + "': it is " +
          (hasFiles ? "ReadWrite, ReadOnly or ReadWriteCreate." : "ReadWrite or ReadOnly."));
}

void TellMode(Properties& properties, ConnectionMode mode, bool readOnly) {
  properties.Set(modeProperty, NameOf(mode));
  properties.Set("Read Only", readOnly);
}

bool IsReadOnlyMode(const Properties& properties) {
  const Property* mode = properties.Find(modeProperty);
  return mode != nullptr && mode->value == Value(NameOf(ConnectionMode::ReadOnly));
}

}  // namespace tessel
