// An export from the first record to the file in its place. The UI thread reads the records and
// shows how far it is; formatting and writing happen on a line of work.

#include "logic/results/export/FileExport.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "contract/base/Error.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/export/ExportTarget.h"
#include "logic/results/stream/BatchLine.h"

namespace tessel {

namespace {

std::unique_ptr<ExportTarget> TargetOf(const Global& global, const std::string& path,
                                       const ExportChoices& choices,
                                       std::vector<FieldInfo> columns) {
  if (choices.format != ExportFormat::Sheets)
    return MakeTextTarget(global.TheFiles(), path, choices, std::move(columns));
  if (global.Sheets() == nullptr) RaiseAppError("This program cannot write sheets.");
  return MakeSheetTarget(*global.Sheets(), path, choices, std::move(columns));
}

std::string MessageOf(const std::string& path, std::int64_t records) {
  return "Exporting " + std::to_string(records) + (records == 1 ? " record to " : " records to ") +
         path.substr(path.rfind(pathSeparator) + 1) + "...";
}

/// Gives all records to the line; false once the user has cancelled.
bool GiveAll(BatchReader& reader, BatchLine& line, dlgAsync& async) {
  while (!reader.AtEnd()) {
    const auto batch = reader.NewBatch();
    while (!reader.AtEnd() && !IsFull(*batch)) reader.ReadInto(*batch);
    if (!line.Give(batch)) return false;
    if (!async.DoProgress(static_cast<double>(batch->Records()))) return false;
  }
  return true;
}

}  // namespace

std::optional<ExportReport> ExportToFile(const Global& global, dlgAsync& async, BatchReader& reader,
                                         std::vector<FieldInfo> columns,
                                         const ExportChoices& choices, const std::string& path) {
  const std::unique_ptr<ExportTarget> target = TargetOf(global, path, choices, std::move(columns));
  const std::unique_ptr<WorkLine> work = global.MakeWorkLine();
  BatchLine line(*work, *target, [&async] { return async.Yield(); });
  const std::shared_ptr<Connection> connection = reader.Rows().ActiveConnection();
  async.InitProgress(MessageOf(path, reader.Count()),
                     static_cast<double>(std::max<std::int64_t>(reader.Count(), 1)),
                     connection.get(), "records");
  async.TellRate();
  const UnloadAtEnd unload(async);
  work->Add([&] { target->Begin(); });
  bool goesOn = GiveAll(reader, line, async);
  if (goesOn) goesOn = line.Finish();
  if (!goesOn) {
    line.Finish();
    return std::nullopt;
  }
  work->Add([&] { target->End(reader.Count()); });
  line.Finish();  // From here on the file is being put in place.
  return ExportReport{reader.Count(), target->Remarks()};
}

}  // namespace tessel
