#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "contract/base/Files.h"
#include "contract/system/SheetFile.h"
#include "logic/results/export/formats/ExportChoices.h"
#include "logic/results/stream/BatchLine.h"

namespace tessel {

/// A file that records are exported to. It replaces the old one in the end, and not before. On the
/// thread of a line of work.
class ExportTarget : public BatchSink {
 public:
  /// Before the first record. Raises when the file may not be written.
  virtual void Begin() = 0;
  /// Behind the last one of `records`: puts the file in place.
  virtual void End(std::int64_t records) = 0;
  /// What the user has to know of what became of the values, in sentences; mostly empty. After the
  /// end.
  [[nodiscard]] virtual std::string Remarks() const { return {}; }
};

/// A file of text in the format chosen.
[[nodiscard]] std::unique_ptr<ExportTarget> MakeTextTarget(Files& files, const std::string& path,
                                                           const ExportChoices& choices,
                                                           std::vector<FieldInfo> fields);

/// A file of sheets. `sheets` outlives it.
[[nodiscard]] std::unique_ptr<ExportTarget> MakeSheetTarget(SheetFiles& sheets,
                                                            const std::string& path,
                                                            const ExportChoices& choices,
                                                            std::vector<FieldInfo> fields);

}  // namespace tessel
