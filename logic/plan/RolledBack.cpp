#include "logic/plan/RolledBack.h"

#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr const char* savepoint = "tessel_plan";

}  // namespace

void RolledBack::Run(const std::string& command) {
  const auto operation = connection_.StartQuery(command, LockType::ReadOnly);
  async_.Run(operation, "Executing...", AllowsAsynchronousWork(connection_));
}

void RolledBack::Begin() {
  const UserTransaction state = connection_.Transaction().state;
  if (state == UserTransaction::Failed)
    RaiseAppError("The transaction that is open on this connection has failed: end it with "
                  "ROLLBACK first.");
  if (state == UserTransaction::Unknown)
    RaiseAppError("This connection does not tell whether a transaction is open, so that nothing "
                  "can be run and taken back on it.");
  inSavepoint_ = state == UserTransaction::Open;
  begun_ = true;
  try {
    Run(inSavepoint_ ? std::string("SAVEPOINT ") + savepoint : "BEGIN");
  } catch (const Error&) {
    begun_ = false;
    throw;
  }
}

/// A command that was cancelled may have left the session in any state but one: it is still open.
void RolledBack::TakeBack() {
  if (!begun_) return;
  begun_ = false;
  if ((connection_.State() & objectState::open) == 0) return;  // Its end took all back.
  try {
    if (inSavepoint_) {
      Run(std::string("ROLLBACK TO SAVEPOINT ") + savepoint);
      Run(std::string("RELEASE SAVEPOINT ") + savepoint);
    } else {
      Run("ROLLBACK");
    }
  } catch (const Error& error) {
    RaiseAppError("What was run for the plan could not be taken back: " + error.Description());
  }
}

}  // namespace tessel
