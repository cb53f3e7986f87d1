#pragma once

#include "contract/base/Error.h"

namespace tessel::test {

/// The number of the Error that `action` raises; 0 when it raises none.
template <class Action>
[[nodiscard]] int ErrorNumberOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.Number();
  }
  return 0;
}

}  // namespace tessel::test
