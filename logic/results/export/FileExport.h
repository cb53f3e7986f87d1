#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "logic/program/Global.h"
#include "logic/results/export/formats/ExportChoices.h"
#include "logic/results/stream/RecordBatch.h"

namespace tessel {

class dlgAsync;

/// What came of an export.
struct ExportReport {
  std::int64_t records = 0;
  std::string remarks;  ///< Sentences that the user has to read; mostly empty.
};

/// Writes the records to a file, which is replaced whole in the end, under the progress window.
/// Nothing when the user cancelled: the old file is there as it was, as after a failure, which
/// raises Error. `columns` are those of `reader`.
[[nodiscard]] std::optional<ExportReport>
ExportToFile(const Global& global, dlgAsync& async, BatchReader& reader,
             std::vector<FieldInfo> columns, const ExportChoices& choices, const std::string& path);

}  // namespace tessel
