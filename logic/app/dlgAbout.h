#pragma once

#include "logic/program/Global.h"

namespace tessel {

/// Shows the program's name, version and licence over `owner`.
void ShowAbout(const Global& global, Window& owner);

}  // namespace tessel
