#pragma once

#include <memory>
#include <string>

#include "contract/desktop/controls/Label.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"

namespace tessel {

/// The user's own transaction on the connection of a records window: the word that tells what it is
/// like, and the question before it would be lost.
class OpenTransaction {
 public:
  /// What becomes of the session once the user has let the transaction go.
  enum class Session {
    GoesOn,  ///< The transaction is rolled back at once.
    Ends     ///< It ends with the session, which may yet be kept.
  };

  /// All outlive it; `window` has the label `lblTransaction` and bears the connection's name.
  OpenTransaction(const Global& global, dlgAsync& async, Window& window);

  /// Shows what the connection tells of its transaction.
  void Show(const Connection& connection);
  /// To be asked before the transaction would be lost. Where one is under way the user says what
  /// becomes of it, and that is done. False: it stays, and the session with it.
  [[nodiscard]] bool MayEnd(const std::shared_ptr<Connection>& connection, Session session);

 private:
  [[nodiscard]] std::string Since(const Connection& connection) const;
  [[nodiscard]] bool MayCommitOrRollBack(Connection& connection, Session session);
  [[nodiscard]] bool MayRollBack(Connection& connection, Session session);
  [[nodiscard]] bool RollBack(Connection& connection, Session session);
  [[nodiscard]] bool Run(Connection& connection, const char* sql);

  const Clock& clock_;
  dlgAsync& async_;
  Window& window_;
  Help help_;
  Label& lblTransaction_;
};

}  // namespace tessel
