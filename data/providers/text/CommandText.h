#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Raises Error when the command text holds a NUL character: to a C library that is the end of the
/// text, the rest would be left out without a word. `source` is the database's name.
void RefuseNul(const std::string& sql, const std::string& source);

/// The first word of a command text, behind blanks and comments, as written; empty if there is
/// none.
[[nodiscard]] std::string_view FirstWord(std::string_view sql);

/// True when a statement of the text begins with one of `words`. Without regard to case.
[[nodiscard]] bool HasStatement(std::string_view sql, const std::vector<std::string_view>& words);

/// True when one of `words` stands in the text outside of quotes and comments. Without regard to
/// case.
[[nodiscard]] bool HasWord(std::string_view sql, const std::vector<std::string_view>& words);

/// True when something follows the end of a first statement.
[[nodiscard]] bool HasSeveralStatements(std::string_view sql);

/// True when a statement of the text begins with the word `first` and holds one of `others`
/// outside of quotes and comments. Without regard to case.
[[nodiscard]] bool HasStatement(std::string_view sql, std::string_view first,
                                const std::vector<std::string_view>& others);

}  // namespace tessel
