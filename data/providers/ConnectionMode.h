#pragma once

#include <string>

#include "contract/base/Properties.h"
#include "data/providers/text/ConnectionKeys.h"

namespace tessel {

/// What a connection may do: the key "Mode" of its string, in the native providers.
enum class ConnectionMode {
  ReadWrite,        ///< When the key is missing.
  ReadOnly,         ///< The database refuses all changes.
  ReadWriteCreate,  ///< A file that is missing is made.
};

/// The mode called `name`; empty: ReadWrite. Raises Error with `source` for one that is none;
/// ReadWriteCreate is one only where `hasFiles` holds.
[[nodiscard]] ConnectionMode ToConnectionMode(const std::string& name, const std::string& source,
                                              bool hasFiles);

/// Tells the mode of a session by its properties: "Mode", and "Read Only", which may be true for
/// another reason, too.
void TellMode(Properties& properties, ConnectionMode mode, bool readOnly);

/// Whether the properties of a session tell that it was opened with Mode=ReadOnly.
[[nodiscard]] bool IsReadOnlyMode(const Properties& properties);

}  // namespace tessel
