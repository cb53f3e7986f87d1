#include "data/providers/CommandText.h"

#include "contract/base/Error.h"

namespace tessel {

void RefuseNul(const std::string& sql, const std::string& source) {
  const std::size_t at = sql.find('\0');
  if (at == std::string::npos) return;
  throw Error(errorNumber::database, source,
              "The command text holds a NUL character (byte " + std::to_string(at + 1) +
                  "). Nothing was run.");
}

std::string WithoutBrackets(const std::string& name) {
  const bool bracketed = name.size() > 2 && name.front() == '[' && name.back() == ']';
  return bracketed ? name.substr(1, name.size() - 2) : name;
}

}  // namespace tessel
