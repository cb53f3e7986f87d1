#include "data/providers/memory/MemorySession.h"

#include <algorithm>
#include <utility>

namespace tessel {

MemorySession::MemorySession(MemoryRoute route)
    : server_(*route.server),
      log_(std::move(route.log)),
      connectionString_(std::move(route.connectionString)),
      writer_(server_) {}

void MemorySession::RequireAlive() const {
  if (!alive_) throw Error(MemoryError("The server has gone away."));
}

void MemorySession::Open(const Login& login, WorkContext& /*context*/) {
  log_->opened.push_back({connectionString_, login.user, login.password, !waitedFor_});
  if (server_.openFailure) throw Error(*server_.openFailure);
  ++log_->openSessions;
  catalog_ = server_.defaultDatabase;
}

void MemorySession::Close() noexcept {
  --log_->openSessions;
  log_->closed.push_back(connectionString_);
}

// --- commands ----------------------------------------------------------------------------------

std::vector<FieldInfo> MemorySession::ExecuteCommand(const std::string& sql, WorkContext& context) {
  RequireAlive();
  log_->executed.push_back({connectionString_, sql, !waitedFor_});
  const MemoryResult& first = server_.TakeAnswer(sql);
  next_.assign(first.then.begin(), first.then.end());
  next_.push_front(first);
  uniqueRows_.clear();
  walk_ = TextWalk(sql, SqlDialect::Standard, context);
  return FindRows(context);
}

std::vector<FieldInfo> MemorySession::NextResult(WorkContext& context) {
  RequireAlive();
  walk_.LeaveRows(WhenDone(), context);
  return FindRows(context);
}

EarlierStatements MemorySession::WhenDone() const {
  return transaction_ == UserTransaction::None ? EarlierStatements::Stay
                                               : EarlierStatements::MayBeUndone;
}

/// Goes on to the next statement with columns.
std::vector<FieldInfo> MemorySession::FindRows(WorkContext& context) {
  std::vector<FieldInfo> fields;
  while (fields.empty() && !next_.empty()) {
    result_ = std::move(next_.front());
    next_.pop_front();
    fields = BeginStatement(context);
    if (fields.empty()) walk_.Next(WhenDone(), context);
  }
  return fields;
}

std::vector<FieldInfo> MemorySession::BeginStatement(WorkContext& context) {
  fetched_ = 0;
  for (const ErrorInfo& notice : result_.notices) context.Report(notice);
  transaction_ = result_.transaction.value_or(transaction_);
  if (result_.failedAt) context.FailAt(*result_.failedAt);
  if (result_.failure && !result_.failAtRow) throw Error(*result_.failure);
  catalog_ = result_.newCatalog.value_or(catalog_);
  std::vector<FieldInfo> fields = result_.DescribedFields();
  if (fields.empty() || result_.recordsAffected >= 0) context.EndStatement(result_.recordsAffected);
  if (!fields.empty()) uniqueRows_.push_back(result_.uniqueRows);
  return fields;
}

/// The last call brings no rows: so what was fetched is seen before the end is.
bool MemorySession::FetchRows(RowSink& rows, std::size_t maxRows, WorkContext& context) {
  RequireAlive();
  if (context.StopAsked()) return true;
  if (HoldsFetch()) result_.holdAtRow.reset();
  if (result_.failAtRow == fetched_) throw Error(*result_.failure);
  const std::size_t end = BlockEnd(maxRows);
  if (fetched_ == end) return false;
  for (; fetched_ < end; ++fetched_) {
    const MemoryRow& row = (*result_.rows)[fetched_];
    for (std::size_t i = 0; i < result_.fields.size(); ++i) rows.Column(i).Append(row[i]);
    rows.EndRow();
  }
  return true;
}

std::size_t MemorySession::BlockEnd(std::size_t maxRows) const {
  std::size_t end = std::min(fetched_ + std::min(result_.block, maxRows), result_.rows->size());
  for (const auto& stop : {result_.holdAtRow, result_.failAtRow})
    if (stop && *stop > fetched_) end = std::min(end, *stop);
  return std::max(end, fetched_);
}

std::vector<std::size_t> MemorySession::FindKey(std::size_t result,
                                                const std::vector<FieldInfo>& /*fields*/) {
  return uniqueRows_.at(result) ? std::vector<std::size_t>{0} : std::vector<std::size_t>();
}

// --- changes -----------------------------------------------------------------------------------

StatementResult MemorySession::RunStatement(const RowStatement& statement,
                                            WorkContext& /*context*/) {
  RequireAlive();
  ++log_->changes;
  if (server_.changeFailure && server_.changesBeforeFailure-- <= 0)
    throw Error(*server_.changeFailure);
  return writer_.Run(statement);
}

void MemorySession::RunControl(std::string_view sql, const WorkContext* /*context*/) {
  RequireAlive();
  writer_.Control(sql);
}

// --- catalogs and schema -------------------------------------------------------------------------

void MemorySession::SetCatalog(const std::string& name, WorkContext& /*context*/) {
  RequireAlive();
  log_->catalogs.push_back(name);
  catalog_ = server_.FindCatalog(name);
  if (server_.properties.Number("Catalog Change Ends Session", 0) != 0)
    transaction_ = UserTransaction::None;
}

void MemorySession::ReadSchema(SchemaRows& rows, WorkContext& /*context*/) {
  RequireAlive();
  server_.ReadSchema(rows);
}

}  // namespace tessel
