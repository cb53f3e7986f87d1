#include "contract/sql/SqlDialect.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr std::array<std::pair<std::string_view, SqlDialect>, 5> namedDialects{
    {{"POSTGRES", SqlDialect::PostgreSQL},
     {"MARIADB", SqlDialect::MariaDB},
     {"MYSQL", SqlDialect::MariaDB},
     {"SQLITE", SqlDialect::SQLite},
     {"SQL SERVER", SqlDialect::SqlServer}}};

}  // namespace

SqlDialect DialectOf(std::string_view dbmsName) {
  const std::string name = AsciiUpper(dbmsName);
  const auto found = std::ranges::find_if(
      namedDialects, [&](const auto& one) { return name.find(one.first) != std::string::npos; });
  return found == namedDialects.end() ? SqlDialect::Standard : found->second;
}

}  // namespace tessel
