#pragma once

#include <string>
#include <string_view>

#include "contract/sql/SqlStatements.h"

namespace tessel::test {

/// Divides any text and looks at what holds for every one: statements stand in their order without
/// blanks around them; between them nothing stands but blanks, comments and delimiters; a statement
/// alone is one statement; a caret in it finds it. Empty when all holds; otherwise what is wrong.
[[nodiscard]] std::string ComplaintAboutStatements(std::string_view text, SqlDialect dialect,
                                                   ClientWords clientWords);
/// The same for every dialect, with and without lines for tools.
[[nodiscard]] std::string ComplaintAboutStatements(std::string_view text);

}  // namespace tessel::test
