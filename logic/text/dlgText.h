#pragma once

#include <string>

#include "logic/program/Global.h"

namespace tessel {

/// Asks for one line of text under a prompt. `text` is proposed, and replaced when the user
/// confirms; false otherwise.
bool GetText(const Global& global, int helpContext, const std::string& prompt, std::string& text);

}  // namespace tessel
