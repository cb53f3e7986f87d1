#include "data/tasks/LoadTask.h"

#include <string>

namespace tessel {

namespace {

constexpr std::size_t sectionRows = 50'000;
constexpr std::chrono::milliseconds progressPace{100};

void Run(ProviderSession& session, std::string sql, WorkContext& context) {
  RowStatement statement;
  statement.sql = std::move(sql);
  (void)session.RunStatement(statement, context);
}

}  // namespace

bool LoadTask::Step(ProviderSession& session) {
  try {
    if (Advance(session)) return true;
  } catch (...) {
    NoteRefused();
    Leave(session);
    throw;
  }
  Settle();
  return false;
}

bool LoadTask::Advance(ProviderSession& session) {
  ThrowIfStopped();
  if (!begun_) {
    Begin(session);
    return true;
  }
  batch_.Clear();
  if (!request_.rows->Next(batch_)) {
    EndAll(session);
    return false;
  }
  AddBatch(session);
  return true;
}

// --- the beginning -------------------------------------------------------------------------------

void LoadTask::Begin(ProviderSession& session) {
  begun_ = true;
  const WriteDialect* dialect = session.Writing();
  if (dialect == nullptr)
    throw Error(errorNumber::notSupported, "Tessel", "This provider cannot load rows.");
  RequireTransactions(*dialect);
  const bool apart = dialect->definesAtOnce || dialect->needsKey;
  if (apart) MakeTable(session);
  transaction_.emplace(session, *dialect);
  if (!apart) MakeTable(session);
  madeTable_ = apart && !request_.createTable.empty();
  lastProgress_ = std::chrono::steady_clock::now();
}

void LoadTask::RequireTransactions(const WriteDialect& dialect) const {
  if (!dialect.needsKey || request_.commitRows > 0) return;
  throw Error(errorNumber::notSupported, "Tessel",
              "Nothing is known of the transactions of this database: rows that it has taken could "
              "not be taken back. Import in batches, and what was taken stays.");
}

/// A statement that ends the user's transaction is not run while that is open.
void LoadTask::MakeTable(ProviderSession& session) {
  if (request_.createTable.empty()) return;
  const WriteDialect& dialect = *session.Writing();
  if (dialect.definesAtOnce && IsUnderWay(session.Transaction()))
    throw Error(errorNumber::application, "Tessel",
                "To make a table would end your open transaction in this database. Run COMMIT or "
                "ROLLBACK first, or import into a table that is there.");
  Run(session, request_.createTable, *this);
}

// --- rows ----------------------------------------------------------------------------------------

void LoadTask::AddBatch(ProviderSession& session) {
  if (!loader_) loader_ = session.BeginLoad(request_, *this);
  lines_.insert(lines_.end(), batch_.lines.begin(), batch_.lines.end());
  loader_->Add(batch_, *this);
  rows_ += static_cast<std::int64_t>(batch_.Rows());
  TellRows();
  const auto most =
      request_.commitRows > 0 ? static_cast<std::size_t>(request_.commitRows) : sectionRows;
  if (lines_.size() >= most) EndSection(session);
}

void LoadTask::TellRows() {
  const auto now = std::chrono::steady_clock::now();
  if (now - lastProgress_ < progressPace) return;
  lastProgress_ = now;
  Tell(
      [this](TaskNews& news) {
        news.rowsFetched = rows_;
        news.progress = true;
      },
      true);
}

void LoadTask::EndSection(ProviderSession& session) {
  if (loader_) loader_->End(*this);
  loader_.reset();
  lines_.clear();
  if (request_.commitRows == 0) return;
  Keep();
  transaction_.emplace(session, *session.Writing());
}

void LoadTask::EndAll(ProviderSession& session) {
  if (loader_) loader_->End(*this);
  loader_.reset();
  ThrowIfStopped();
  Keep();
  NoteCatalog(session);
  Tell([this](TaskNews& news) { news.rowsFetched = rows_; }, false);
}

void LoadTask::Keep() {
  transaction_->Keep(*this);
  transaction_.reset();
  rowsKept_ = rows_;
}

// --- a failure -----------------------------------------------------------------------------------

/// What the database said of its own row is told by the line that the row came from.
void LoadTask::NoteRefused() {
  if (!RefusedAt()) return;
  const auto row = static_cast<std::size_t>(RefusedAt()->row);
  if (row < lines_.size()) refused_ = RefusedRow{lines_[row], RefusedAt()->column};
}

/// Nothing is left half done: the rows go, and a table that was made for them.
void LoadTask::Leave(ProviderSession& session) noexcept {
  BeginTakingBack();
  loader_.reset();
  transaction_.reset();
  if (!madeTable_ || rowsKept_ > 0 || !session.IsAlive()) return;
  try {
    WorkContext unstopped;
    Run(session, "drop table " + request_.table, unstopped);
  } catch (const std::exception&) {
    return;  // The table stays, without rows.
  }
}

}  // namespace tessel
