#include "contract/desktop/Window.h"

#include "contract/base/Error.h"

namespace tessel {

void Window::ThrowMissing(std::string_view name) const {
  throw Error(errorNumber::itemNotFound, "Tessel",
              "The form " + FormName() + " has no control '" + std::string(name) +
                  "' of the kind asked for.");
}

}  // namespace tessel
