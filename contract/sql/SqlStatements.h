#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "contract/sql/SqlDialect.h"

namespace tessel {

// A text of SQL is divided as the server of the dialect does it with a text that is sent whole: the
// simple query of PostgreSQL, the multi statements of MariaDB, the tails of sqlite3_prepare, a
// batch of SQL Server. Strings, quoted names and comments are read by the dialect's rules, and a
// semicolon in the body of a routine or trigger ends nothing. A text that the server would refuse
// is divided too, somehow: what has no end (a string, a comment, a block) goes on to the end of the
// text. Nothing is refused, whatever the bytes, and nothing here raises an Error. Any thread.

/// One statement: bytes [begin, end) of the text, from its first sign behind blanks and comments up
/// to before its delimiter, without blanks at the end. It is never empty. Comments within it, and
/// those in front of its delimiter, belong to it; MariaDB's "/*! */" is SQL, not a comment.
struct SqlStatement {
  std::size_t begin = 0;  ///< Its first byte, counted from 0.
  std::size_t end = 0;    ///< Behind its last byte.

  bool operator==(const SqlStatement&) const = default;
};

/// Whether lines are obeyed that tools know in a script, but no server: in MariaDB "DELIMITER //",
/// which sets what divides statements from there on, and in SQL Server "GO" with or without a
/// count, alone on a line. They belong to no statement. With GO lines a batch is the statement, and
/// with a delimiter of its own all up to that is one: semicolons divide nothing then.
enum class ClientWords { No, Yes };

/// The statements of a text in their order. What is empty, or holds comments only, is none: it
/// gives no result. (MariaDB refuses it between two statements; a comment behind the last delimiter
/// it answers with a result without rows.) Takes time by the length of the text (some nanoseconds a
/// byte at most, whatever is in it), and memory only for what it gives.
[[nodiscard]] std::vector<SqlStatement> SplitStatements(std::string_view text, SqlDialect dialect,
                                                        ClientWords clientWords = ClientWords::No);

/// The statement that a caret in front of the byte `position` is in. On its delimiter, and in the
/// blanks behind that on the same line, it is in the one before; elsewhere between two, as in a
/// comment, in the next. Behind the last one it is in none, but a last one without its delimiter
/// goes on to the end of the text. A position behind the end means the end. Takes time by the
/// length of the text up to the end of the statement behind the caret.
[[nodiscard]] std::optional<SqlStatement> StatementAt(std::string_view text, std::size_t position,
                                                      SqlDialect dialect,
                                                      ClientWords clientWords = ClientWords::No);

}  // namespace tessel
