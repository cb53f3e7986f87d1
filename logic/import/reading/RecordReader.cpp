#include "logic/import/reading/RecordReader.h"

#include "logic/program/Global.h"

namespace tessel {

void RecordReader::ReadMore() {
  if (window_.Text().size() > mostRecordBytes)
    RaiseAt(line_, "",
            "the record that begins here has no end within 512 MB. A quote may be missing.");
  window_.ReadMore();
}

void RaiseAt(std::int64_t line, const std::string& place, const std::string& problem) {
  RaiseAppError("Line " + std::to_string(line) + (place.empty() ? "" : ", " + place) + ": " +
                problem);
}

}  // namespace tessel
