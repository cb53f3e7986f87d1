#include "data/providers/postgresql/client/PostgresMessages.h"

#include <algorithm>
#include <string_view>

#include "contract/text/Utf8.h"

namespace tessel {

namespace {

bool BeginsCharacter(char byte) { return !ContinuesCharacter(byte); }

/// The part of `text` before its character number `position`, counted from 1.
std::string_view Before(std::string_view text, int position) {
  std::size_t at = 0;
  for (int characters = 0; at < text.size(); ++at)
    if (BeginsCharacter(text[at]) && ++characters == position) break;
  return text.substr(0, at);
}

/// "LINE 2, COLUMN 5".
std::string Place(std::string_view text, int position) {
  const std::string_view before = Before(text, position);
  const auto line = std::ranges::count(before, '\n') + 1;
  const std::size_t lineEnd = before.rfind('\n');
  const std::size_t start = lineEnd == std::string_view::npos ? 0 : lineEnd + 1;
  const auto column = std::ranges::count_if(before.substr(start), BeginsCharacter) + 1;
  return "LINE " + std::to_string(line) + ", COLUMN " + std::to_string(column);
}

void AddLine(std::string& text, std::string_view label, const std::string& value) {
  if (!value.empty()) text.append("\n").append(label).append(": ").append(value);
}

}  // namespace

ErrorInfo ToErrorInfo(const PqMessage& message, std::int32_t number, const std::string& sql) {
  ErrorInfo info;
  info.number = number;
  info.sqlState = message.sqlState;
  info.source = "PostgreSQL";
  if (!message.severity.empty()) info.description = message.severity + ": ";
  info.description += message.text;
  AddLine(info.description, "DETAIL", message.detail);
  AddLine(info.description, "HINT", message.hint);
  AddLine(info.description, "QUERY", message.innerQuery);
  if (number != errorNumber::information) AddLine(info.description, "CONTEXT", message.context);
  if (message.position > 0) info.description += "\n" + Place(sql, message.position);
  if (message.innerPosition > 0)
    info.description += "\n" + Place(message.innerQuery, message.innerPosition) + " of the query";
  return info;
}

}  // namespace tessel
