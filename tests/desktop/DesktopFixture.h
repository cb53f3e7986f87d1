#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "tests/desktop/QtContractHost.h"
#include "tests/desktop/QtUser.h"

namespace tessel::test {

/// A desktop on Qt with nothing on it, and a user.
class DesktopFixture : public testing::Test {
 protected:
  [[nodiscard]] std::unique_ptr<Window> ShowForm(std::string_view form) {
    auto window = host.TheDesktop().MakeWindow(form);
    window->Show();
    host.Settle();
    return window;
  }
  [[nodiscard]] Desktop& TheDesktop() { return host.TheDesktop(); }

  QtContractHost host;
};

}  // namespace tessel::test
