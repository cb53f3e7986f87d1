#pragma once

#include <optional>
#include <string>

#include "logic/program/Global.h"

namespace tessel {

/// The password of a connection string that says "Password From": the keyring's, where it has one,
/// or else what the user types in a window above `owner`, which comes up when the keyring takes
/// more than a moment. Nothing when the user cancels. `refused`: the connection with the keyring's
/// password has just failed; the user is asked then, with that password in the box.
[[nodiscard]] std::optional<std::string>
AskPassword(const Global& global, Window& owner, const std::string& connectionString, bool refused);

}  // namespace tessel
