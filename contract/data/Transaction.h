#pragma once

#include <chrono>

namespace tessel {

// The user's own transaction: one that his SQL began. Those in which the program itself writes rows
// end with the writing and are never told.

/// What the user's own transaction is like.
enum class UserTransaction {
  None,     ///< Each statement is its own transaction.
  Waiting,  ///< None yet: autocommit is off, and the next statement begins one.
  Open,     ///< Begun and not ended; what was done since can be undone.
  Failed,   ///< Nothing but its end is accepted.
  Unknown   ///< The database does not tell: there may be one.
};

/// Whether `state` is that of a transaction whose work is lost with the session.
[[nodiscard]] constexpr bool IsUnderWay(UserTransaction state) {
  return state == UserTransaction::Open || state == UserTransaction::Failed;
}

/// The user's own transaction as a connection saw it last. Closed connections have none.
struct TransactionState {
  UserTransaction state = UserTransaction::None;
  /// When it was first seen, while it is under way.
  std::chrono::system_clock::time_point since = {};
};

}  // namespace tessel
