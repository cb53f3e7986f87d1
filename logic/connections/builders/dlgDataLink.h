#pragma once

#include <functional>
#include <string>

#include "logic/program/Global.h"

namespace tessel {

/// Tries a connection string and says in a sentence how it went.
using DataLinkTest = std::function<std::string(const std::string& connectionString)>;

/// Edits a connection string as a table of keys and values, over `owner`. Returns the new string,
/// or the given one, byte for byte, when the user cancels.
std::string PromptDataLink(const Global& global, Window& owner, const std::string& connectionString,
                           DataLinkTest test);

}  // namespace tessel
