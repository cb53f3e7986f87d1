#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "contract/desktop/Window.h"

namespace tessel {

/// Lists windows at the end of the Window menu of `owner`, the first nine of them each with its
/// digit, the active one checked. `choose` is called with the index of the one that is chosen.
void ListWindows(Window& owner, const std::vector<Window*>& windows,
                 const std::function<void(std::size_t)>& choose);

}  // namespace tessel
