#pragma once

#include "contract/desktop/controls/ListControls.h"
#include "logic/connections/builders/Builder.h"

namespace tessel {

/// "Connect to SQL Server Database".
class dlgCnSQLSrv : public Builder {
 public:
  explicit dlgCnSQLSrv(const Global& global);

 private:
  void Parse(const std::string& connectionString) override;
  [[nodiscard]] std::optional<std::string> Build() const override;
  void chkTrusted_Click();

  CheckBox& chkTrusted_;
  ComboBox& cboNetLib_;
};

}  // namespace tessel
