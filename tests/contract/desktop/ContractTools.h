#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tests/contract/desktop/ContractHost.h"
#include "tests/support/ErrorNumber.h"

namespace tessel::test {

/// A window of the form, shown.
[[nodiscard]] inline std::unique_ptr<Window> ShowForm(ContractHost& host, std::string_view form) {
  auto window = host.TheDesktop().MakeWindow(form);
  window->Show();
  host.Settle();
  return window;
}

/// The frame with one document inside, both shown. The document goes first.
struct Framed {
  Framed(ContractHost& host, std::string_view form)
      : frame(ShowForm(host, "frmMDI")), document(ShowForm(host, form)) {}

  std::unique_ptr<Window> frame;
  std::unique_ptr<Window> document;
};

/// What happened, in order.
class Record {
 public:
  void Add(std::string what) { seen_.push_back(std::move(what)); }
  /// A handler without arguments that notes `what`.
  [[nodiscard]] auto Noting(std::string what) {
    return [this, what = std::move(what)] { Add(what); };
  }
  /// What happened since the last call.
  [[nodiscard]] std::vector<std::string> Take() { return std::exchange(seen_, {}); }

 private:
  std::vector<std::string> seen_;
};

using Seen = std::vector<std::string>;

}  // namespace tessel::test
