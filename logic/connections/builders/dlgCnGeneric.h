#pragma once

#include "contract/desktop/controls/ListControls.h"
#include "logic/connections/builders/Builder.h"

namespace tessel {

/// "Connect to Data Source": any provider.
class dlgCnGeneric : public Builder {
 public:
  explicit dlgCnGeneric(const Global& global);

 private:
  void Parse(const std::string& connectionString) override;
  [[nodiscard]] std::optional<std::string> Build() const override;

  ComboBox& cboProvider_;
};

}  // namespace tessel
