#pragma once

#include "contract/system/SheetFile.h"

namespace tessel {

/// Writes files of sheets in the XLSX format.
class XlsxFiles final : public SheetFiles {
 public:
  [[nodiscard]] std::unique_ptr<SheetFile> StartReplacing(const std::string& path) override;
};

}  // namespace tessel
