#include "data/providers/odbc/driver/OdbcErrors.h"

#include <algorithm>
#include <array>

namespace tessel::odbc {

namespace {

ErrorInfo ToError(std::int32_t number, const Diagnostic& record, std::string_view driver) {
  ErrorInfo error;
  error.number = number;
  error.nativeError = record.native;
  error.sqlState = record.state;
  error.source = driver;
  error.description = record.text;
  while (error.description.ends_with('\n')) error.description.pop_back();
  return error;
}

/// Where the next notice of a joined text begins (at its ";"), or the text's end.
std::size_t NextNotice(std::string_view text) {
  constexpr std::array<std::string_view, 5> starts = {
      ";NOTICE: ", ";WARNING: ", ";INFO: ", ";LOG: ", ";DEBUG: "};
  std::size_t next = text.size();
  for (const std::string_view start : starts) next = std::min(next, text.find(start));
  return next;
}

}  // namespace

std::vector<ErrorInfo> ToErrors(const Diagnostics& records, std::string_view driver) {
  std::vector<ErrorInfo> errors;
  for (const Diagnostic& record : records)
    errors.push_back(ToError(errorNumber::database, record, driver));
  return errors;
}

std::vector<ErrorInfo> ToNotices(const Diagnostics& records, std::string_view driver,
                                 const DriverProfile& profile) {
  std::vector<ErrorInfo> notices;
  for (const Diagnostic& record : records) {
    std::string_view rest = record.text;
    while (!rest.empty()) {
      const std::size_t end = profile.joinsNotices ? NextNotice(rest) : rest.size();
      Diagnostic one{record.state, record.native, std::string(rest.substr(0, end))};
      notices.push_back(ToError(errorNumber::information, one, driver));
      rest.remove_prefix(std::min(end + 1, rest.size()));
    }
  }
  return notices;
}

// 08: connection exceptions. 57P01 to 57P03: the server was shut down, crashed, or starts.
bool SaysSessionIsLost(const Diagnostics& records) {
  return std::ranges::any_of(records, [](const Diagnostic& record) {
    return record.state.starts_with("08") || record.state.starts_with("57P0");
  });
}

}  // namespace tessel::odbc
