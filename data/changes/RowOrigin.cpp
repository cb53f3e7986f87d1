#include "data/changes/RowOrigin.h"

namespace tessel {

namespace {

ErrorInfo NotWritable(std::string text) {
  return Error(errorNumber::notSupported, "Tessel", std::move(text)).Info();
}

}  // namespace

std::optional<ErrorInfo> WhyOtherCatalog(const std::string& from, const std::string& inUse) {
  if (from == inUse) return std::nullopt;
  std::string text = from.empty() ? "These records were read while no database was in use, and "
                                  : "These records come from the database '" + from + "', and ";
  text += inUse.empty() ? "none is in use now: " : "'" + inUse + "' is in use now: ";
  if (!from.empty()) text += "choose '" + from + "' again, or ";
  return NotWritable(text + "run the query again. Nothing was changed.");
}

std::optional<ErrorInfo> WhyOtherOrigin(const RowOrigin& from, const RowOrigin& inUse) {
  if (from.connectionString != inUse.connectionString)
    return NotWritable("These records come from another connection: run the query again. Nothing "
                       "was changed.");
  return WhyOtherCatalog(from.catalog, inUse.catalog);
}

}  // namespace tessel
