#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/support/contract/ContractHost.h"

namespace tessel::test {

/// A window of the form, shown.
[[nodiscard]] inline std::unique_ptr<Window> ShowForm(ContractHost& host, std::string_view form) {
  auto window = host.TheDesktop().MakeWindow(form);
  window->Show();
  host.Settle();
  return window;
}

/// What happened, in order.
class Record {
 public:
  void Add(std::string what) { seen_.push_back(std::move(what)); }
  /// What happened since the last call.
  [[nodiscard]] std::vector<std::string> Take() { return std::exchange(seen_, {}); }

 private:
  std::vector<std::string> seen_;
};

using Seen = std::vector<std::string>;

}  // namespace tessel::test
