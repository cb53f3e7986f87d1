#include "data/tasks/RowTransaction.h"

#include <exception>

#include "contract/base/Error.h"

namespace tessel {

namespace {

[[noreturn]] void RaiseFailed() {
  throw Error(ErrorInfo{errorNumber::database,
                        0,
                        "25P02",
                        "Tessel",
                        "Your transaction has failed, and the database accepts nothing but its "
                        "end. Run ROLLBACK first, then write the change again.",
                        {},
                        0});
}

}  // namespace

RowTransaction::RowTransaction(ProviderSession& session, const WriteDialect& dialect)
    : session_(session) {
  const UserTransaction users = session.Transaction();
  if (users == UserTransaction::Failed) RaiseFailed();
  kept_ = dialect.needsKey;
  if (kept_) return;
  const bool joins = users == UserTransaction::Open || users == UserTransaction::Waiting;
  isSavepoint_ = joins || dialect.begin.empty();
  session_.RunControl(isSavepoint_ ? "savepoint tessel_change" : dialect.begin, nullptr);
}

RowTransaction::~RowTransaction() {
  if (!kept_) Undo();
}

void RowTransaction::Keep(const WorkContext& context) {
  if (kept_) return;
  session_.RunControl(isSavepoint_ ? "release savepoint tessel_change" : "commit", &context);
  kept_ = true;
}

/// A cancel that comes late may hit the first attempt. A session that is lost has undone it all.
void RowTransaction::Undo() noexcept {
  constexpr int attempts = 3;
  for (int i = 0; i < attempts && session_.IsAlive(); ++i) {
    try {
      session_.RunControl(isSavepoint_ ? "rollback to savepoint tessel_change" : "rollback",
                          nullptr);
      if (isSavepoint_) session_.RunControl("release savepoint tessel_change", nullptr);
      return;
    } catch (const std::exception&) {
      continue;
    }
  }
}

}  // namespace tessel
