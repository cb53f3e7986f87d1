#pragma once

#include "logic/connections/builders/Builder.h"

namespace tessel {

/// "Connect to Access Database".
class dlgCnAccess : public Builder {
 public:
  explicit dlgCnAccess(const Global& global);

 private:
  void Parse(const std::string& connectionString) override;
  [[nodiscard]] std::optional<std::string> Build() const override;
  void cmdBrowse_Click();

  const Global& global_;
};

}  // namespace tessel
