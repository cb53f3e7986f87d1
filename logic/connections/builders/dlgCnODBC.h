#pragma once

#include "contract/desktop/controls/ListControls.h"
#include "logic/connections/builders/Builder.h"

namespace tessel {

/// "Connect to ODBC Data Source": a data source name, or a driver and a server.
class dlgCnODBC : public Builder {
 public:
  explicit dlgCnODBC(const Global& global);

 private:
  void Parse(const std::string& connectionString) override;
  [[nodiscard]] std::optional<std::string> Build() const override;
  void ShowMode();

  OptionButton& optDSN_;
  OptionButton& optDSNLess_;
  ComboBox& cboDSN_;
  ComboBox& cboDriver_;
};

}  // namespace tessel
