// Running SQL in a records window: how it is made ready, started, and how the window shows what
// came of it. It runs by itself, as F5 has it, or is started with others and concluded when all
// have ended.

#include "contract/base/Error.h"
#include "logic/results/frmRecords.h"
#include "logic/results/runs/FailedPlace.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr int confirmContext = 8203;
constexpr int propertiesOfQueryContext = 8405;
constexpr const char* sqlFilter = "SQL Files (*.sql)|*.sql";

}  // namespace

bool frmRecords::DoQueryTags(const std::string& taggedSQL, bool confirmFirst, int historyPosition) {
  const auto query = Prepare(taggedSQL, confirmFirst, historyPosition);
  return query && Execute(*query);
}

// --- making ready --------------------------------------------------------------------------------

std::optional<PreparedQuery> frmRecords::Prepare(const std::string& taggedSQL, bool confirmFirst,
                                                 int historyPosition) {
  report_.failedPlace.reset();
  std::optional<SubstitutedText> filled = Preprocess(taggedSQL);
  if (!filled) return std::nullopt;
  return LetPass({std::move(filled->text), taggedSQL, confirmFirst, historyPosition,
                  filled->usedSources, std::move(filled->tags)});
}

std::optional<std::string> frmRecords::FillInTags(const std::string& taggedSQL) {
  std::optional<SubstitutedText> filled = Preprocess(taggedSQL);
  if (!filled) return std::nullopt;
  return std::move(filled->text);
}

/// Nothing when the tags could not be filled in; the reason has been shown then.
std::optional<SubstitutedText> frmRecords::Preprocess(const std::string& taggedSQL) {
  if (!MayHoldTags(taggedSQL)) return SubstitutedText{taggedSQL};
  try {
    async_.InitProcess("Preprocessing SQL...", mCn_.get());
    const UnloadAtEnd unload(async_);
    return SubstituteTags(taggedSQL, *this);
  } catch (const Error& error) {
    help_.HelpMsgBoxNotice(error.Description(), MessageButtons::Ok, MessageIcon::Exclamation);
    return std::nullopt;
  }
}

/// Asks what there is to ask before it runs; nothing when the user takes it back.
std::optional<PreparedQuery> frmRecords::LetPass(PreparedQuery query) {
  const std::string shown = query.confirmFirst ? query.sql : std::string();
  if (query.confirmFirst && !ConfirmSQL(query.sql)) return std::nullopt;
  query.edited = query.confirmFirst && query.sql != shown;
  if (!editing_.MayLeaveRows()) return std::nullopt;
  return query;
}

bool frmRecords::ConfirmSQL(std::string& sql) {
  return ShowText(global_, host_, sql,
                  {confirmContext, sqlFilter, 9600, 2400, true, true, TitleOf("SQL")});
}

// --- running -------------------------------------------------------------------------------------

bool frmRecords::Execute(const PreparedQuery& query) {
  const std::shared_ptr<QueryOperation> operation = Start(query);
  if (operation == nullptr) return false;
  bool interrupted = false;
  try {
    std::int64_t recordsAffected = 0;
    interrupted = !async_.DoQuery(operation, recordsAffected, freeThreaded_);
  } catch (const Error&) {
    // The operation keeps what failed.
  }
  return Conclude(query, Elapsed(), interrupted);
}

std::shared_ptr<QueryOperation> frmRecords::Start(const PreparedQuery& query) {
  report_ = RunReport();
  start_ = global_.TheDesktop().TheClock().Milliseconds();
  try {
    dataGrid_.SetDataSource(nullptr);
    EnableRecords(false);
    mCn_->ClearErrors();
    query_.reset();
    ForgetStatements();
    query_ =
        mCn_->StartQuery(query.sql, editing_.Locked() ? LockType::ReadOnly : LockType::Optimistic);
    query_->RowsBegan = [this] { report_.firstRow = Elapsed(); };
    return query_;
  } catch (const Error& error) {
    report_.elapsed = Elapsed();
    ReportFailure(error);
    return nullptr;
  }
}

std::int64_t frmRecords::Elapsed() const {
  return global_.TheDesktop().TheClock().Milliseconds() - start_;
}

bool frmRecords::Conclude(const PreparedQuery& query, std::int64_t elapsed, bool interrupted) {
  report_.elapsed = elapsed;
  report_.state = interrupted ? RunState::Cancelled : RunState::Done;
  query_->RowsBegan = nullptr;
  bool done = false;
  try {
    done = ShowOutcome(query, interrupted);
  } catch (const Error& error) {
    ReportFailure(error);
  }
  report_.failedPlace = FailedPlace(query, *query_);
  OfferStatements(query);
  if (done) FollowCommand();
  return done;
}

void frmRecords::ForgetStatements() {
  if (statements_ == nullptr) return;
  statements_.reset();
  cmdStatements_.SetVisible(false);
  host_.ForgetStatements(*this);
}

/// What there is to know beyond the first rows: of a text of one statement nothing.
void frmRecords::OfferStatements(const PreparedQuery& query) {
  if (query_->Results().size() < 2 && !query_->Stop()) return;
  auto statements = std::make_shared<const StatementList>(query.sql, *mCn_, query_);
  if (!statements->HasSeveral()) return;
  statements_ = std::move(statements);
  cmdStatements_.SetVisible(true);
  if (dataGrid_.Visible()) results_.Offer(query_->Results());
  Form_Resize();
  std::string stopped = statements_->StopText();
  if (stopped.empty()) return;
  stopped = "[" + stopped + "]";
  report_.error += (report_.error.empty() ? "" : " ") + stopped;
  SetStatus(stopped, statusColor::plain, {true, true, cmdCnErrors_.Visible()});
}

/// False when it was interrupted or failed. An error of the fetch leaves the rows that came before.
bool frmRecords::ShowOutcome(const PreparedQuery& query, bool interrupted) {
  const std::shared_ptr<Recordset> rows = query_->FirstRows();
  const bool failed = !interrupted && query_->Failure();
  if (failed && rows == nullptr) throw Error(*query_->Failure());
  if (rows != nullptr) ShowRowsOf(query, rows);
  if (failed) {
    ReportBrokenFetch(*rows, Error(*query_->Failure()));
    return false;
  }
  UpdateTimer();
  if (rows == nullptr && !ReportNoRows(query_->RecordsAffected(), interrupted)) return false;
  if (interrupted) {
    SetStatus("[Interrupted]", statusColor::interrupted, {true, false, false});
    return false;
  }
  ReportErrors();
  return true;
}

// --- what came of it -----------------------------------------------------------------------------

void frmRecords::ShowRowsOf(const PreparedQuery& query,
                            const std::shared_ptr<Recordset>& recordset) {
  UpdateTimer();
  report_.rows = recordset->RecordCount();
  ShowRecordset(recordset);
  EnableRecords(true);
  history_.Record({query.taggedSQL, query.tagKind, query.sql, recordset->RecordCount()},
                  query.historyPosition);
  Form_Resize();
}

/// The execution failed, or what follows it.
void frmRecords::ReportFailure(const Error& error) {
  report_.state = RunState::Failed;
  report_.error = error.Description();
  UpdateTimer();
  SetStatus(error.Description(), statusColor::failure, {false, true, !mCn_->Errors().empty()});
}

/// The rows that came before the failure are there and stay.
void frmRecords::ReportBrokenFetch(const Recordset& recordset, const Error& error) {
  report_.state = RunState::Failed;
  report_.error = error.Description();
  SetStatus(std::to_string(recordset.RecordCount()) + " record(s). " + error.Description(),
            statusColor::failure, {false, true, !mCn_->Errors().empty()});
}

/// False when the statement was cancelled before anything came of it.
bool frmRecords::ReportNoRows(std::int64_t recordsAffected, bool interrupted) {
  if (recordsAffected >= 0) {
    report_.recordsAffected = recordsAffected;
    SetStatus(std::to_string(recordsAffected) + " record(s) affected.",
              statusColor::recordsAffected);
    return true;
  }
  if (interrupted) {
    SetStatus("Execution cancelled.", statusColor::interrupted);
    return false;
  }
  SetStatus("Execution completed.", statusColor::completed);
  return true;
}

/// Errors that the provider reported beside a success.
void frmRecords::ReportErrors() {
  const std::size_t count = ShownErrors().size();
  if (count != 0)
    SetStatus("[" + std::to_string(count) + " error(s) occurred]", statusColor::errorsOccurred,
              {true, false, true});
}

/// What the button lists: one that only says that a provider lacks something is none.
std::vector<std::string> frmRecords::ShownErrors() const {
  std::vector<std::string> texts;
  for (const ErrorInfo& error : mCn_->Errors())
    if (error.number != errorNumber::noInterface) texts.push_back(error.description);
  return texts;
}

void frmRecords::UpdateTimer() {
  lblTimer_.SetCaption(FormatElapsed(report_.elapsed));
  if (lblTimer_.Visible()) return;
  lblTimer_.SetVisible(true);
  Form_Resize();
}

// --- for the history -----------------------------------------------------------------------------

void frmRecords::RunAgain(const HistoryEntry& entry, bool confirmFirst, int position) {
  if (const auto query = LetPass({entry.sql, entry.taggedSQL, confirmFirst, position, 0}))
    Execute(*query);
}

void frmRecords::RunTagged(const HistoryEntry& entry, bool confirmFirst, int position) {
  DoQueryTags(entry.taggedSQL, confirmFirst, position);
}

void frmRecords::ShowSQL(const std::string& sql) {
  std::string shown = sql;
  ShowText(global_, host_, shown,
           {propertiesOfQueryContext, sqlFilter, 9600, 2400, false, true, TitleOf("SQL")});
}

}  // namespace tessel
