#pragma once

#include <string>

#include "logic/connections/link/ServerTalk.h"
#include "logic/program/Global.h"

namespace tessel {

/// Edits a connection string over `owner`: by the fields of its provider, or as a table of keys and
/// values. Returns the new string, or the given one, byte for byte, when the user cancels. `login`
/// is what was typed beside the string; the test uses it where the string says nothing.
std::string PromptDataLink(const Global& global, Window& owner, const std::string& connectionString,
                           const TypedLogin& login);

}  // namespace tessel
