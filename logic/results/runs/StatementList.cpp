#include "logic/results/runs/StatementList.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contract/data/DbmsName.h"
#include "contract/text/Utf8.h"
#include "logic/results/runs/ListRows.h"

namespace tessel {

namespace {

constexpr std::string_view done = "done";
constexpr std::string_view failed = "failed";
constexpr std::string_view cancelled = "cancelled";
constexpr std::string_view rolledBack = "rolled back";
constexpr std::string_view notCommitted = "not committed";
constexpr std::string_view doneUnlessUndone = "done; may be undone";
constexpr std::string_view notRun = "not run";

/// So many bytes of a statement are shown in a sentence, and in the list.
constexpr std::size_t fewBytes = 60;
constexpr std::size_t manyBytes = 500;

/// How a statement begins, on one line.
std::string FirstWords(std::string_view statement, std::size_t most) {
  std::string text;
  for (const char c : statement.substr(0, CharacterStart(statement, most))) {
    const bool blank = c == ' ' || c == '\t' || c == '\r' || c == '\n';
    if (!blank) text += c;
    else if (!text.empty() && text.back() != ' ') text += ' ';
  }
  return statement.size() > most ? text + "..." : text;
}

/// Some servers answer a comment behind the last statement with an empty result.
bool SaysSomething(const CommandResult& result) {
  return result.rows != nullptr || !result.notices.empty();
}

std::int64_t LineEnds(std::string_view text) { return std::ranges::count(text, '\n'); }

/// "Statement 2", "Statements 2 to 4".
std::string Range(std::int64_t first, std::int64_t last) {
  if (first == last) return "Statement " + std::to_string(first);
  return "Statements " + std::to_string(first) + " to " + std::to_string(last);
}

std::vector<FieldInfo> Columns() {
  return {
      ListColumn("Statement", DataType::BigInt), ListColumn("Line", DataType::BigInt),
      ListColumn("SQL", DataType::VarWChar),     ListColumn("State", DataType::VarWChar),
      ListColumn("Records", DataType::BigInt),   ListColumn("Records Affected", DataType::BigInt),
      ListColumn("Messages", DataType::VarWChar)};
}

std::string Joined(const std::vector<ErrorInfo>& notices) {
  std::string text;
  for (const ErrorInfo& notice : notices) text += (text.empty() ? "" : "\r\n") + notice.description;
  return text;
}

}  // namespace

StatementList::StatementList(std::string sql, const Connection& connection,
                             std::shared_ptr<const QueryOperation> operation)
    : sql_(std::move(sql)),
      dialect_(DialectOf(DbmsName(connection))),
      operation_(std::move(operation)) {}

bool StatementList::HasSeveral() const {
  const auto listed = std::ranges::count_if(operation_->Results(), [](const CommandResult& result) {
    return result.statement.number > 0 || SaysSomething(result);
  });
  return listed > 1 || (operation_->Stop() && Statements().size() > 1);
}

const std::vector<SqlStatement>& StatementList::Statements() const {
  if (!statements_) statements_ = SplitStatements(sql_, dialect_);
  return *statements_;
}

const std::vector<StatementList::Item>& StatementList::Items() const {
  if (!items_) items_ = ListItems();
  return *items_;
}

// --- what came of each ---------------------------------------------------------------------------

/// Results whose statement is not known stand first, in their order; then it is not known either
/// which statements gave none.
std::vector<StatementList::Item> StatementList::ListItems() const {
  std::vector<Item> items;
  const std::vector<CommandResult>& results = operation_->Results();
  auto result = results.begin();
  for (; result != results.end() && result->statement.number == 0; ++result)
    items.push_back({0, &*result, done});
  if (!items.empty()) return items;
  std::int64_t line = 1;
  std::size_t counted = 0;  // Up to this byte.
  for (std::int64_t number = 1; number <= std::ssize(Statements()); ++number) {
    const std::size_t begin = Statements()[static_cast<std::size_t>(number - 1)].begin;
    line += LineEnds(std::string_view(sql_).substr(counted, begin - counted));
    counted = begin;
    const std::size_t before = items.size();
    for (; result != results.end() && result->statement.number == number; ++result)
      items.push_back({number, &*result, StateOf(number, true), line});
    if (items.size() == before) items.push_back({number, nullptr, StateOf(number, false), line});
  }
  for (; result != results.end(); ++result)
    if (SaysSomething(*result)) items.push_back({0, &*result, done});
  return items;
}

std::string_view StatementList::StateOf(std::int64_t number, bool hasResult) const {
  const std::optional<TextStop>& stop = operation_->Stop();
  if (!stop) return done;
  if (stop->statement.number == 0) return hasResult ? done : std::string_view();
  if (number == stop->statement.number) return StateOfStopped();
  if (number > stop->statement.number || operation_->Results().empty()) return notRun;
  if (!stop->keptUpTo) return doneUnlessUndone;
  if (number <= *stop->keptUpTo) return done;
  switch (stop->transaction) {
    case UserTransaction::None:
    case UserTransaction::Waiting: return rolledBack;
    case UserTransaction::Open:
    case UserTransaction::Failed: return notCommitted;
    case UserTransaction::Unknown: return doneUnlessUndone;
  }
  return {};
}

std::string_view StatementList::StateOfStopped() const {
  return operation_->Outcome() == OperationOutcome::Cancelled ? cancelled : failed;
}

std::string_view StatementList::TextOf(std::int64_t number) const {
  if (number <= 0 || number > std::ssize(Statements())) return {};
  const SqlStatement& statement = Statements()[static_cast<std::size_t>(number - 1)];
  return std::string_view(sql_).substr(statement.begin, statement.end - statement.begin);
}

// --- as rows -------------------------------------------------------------------------------------

std::shared_ptr<Recordset> StatementList::Rows(DataAccess& data) const {
  std::vector<std::vector<Value>> rows;
  rows.reserve(Items().size());
  for (const Item& item : Items()) rows.push_back(RowOf(item));
  return data.MakeRecordset(Columns(), std::move(rows));
}

std::vector<Value> StatementList::RowOf(const Item& item) const {
  const bool known = item.number > 0;
  const CommandResult* result = item.result;
  const bool hasRows = result != nullptr && result->rows != nullptr;
  std::string messages = result == nullptr ? std::string() : Joined(result->notices);
  if (item.state == failed && operation_->Failure()) messages = operation_->Failure()->description;
  return {known ? Value(item.number) : Value(),
          known ? Value(item.line) : Value(),
          FirstWords(TextOf(item.number), manyBytes),
          std::string(item.state),
          hasRows ? Value(result->rows->RecordCount()) : Value(),
          result == nullptr ? Value() : CountOrNull(result->recordsAffected),
          std::move(messages)};
}

std::string StatementList::Status() const {
  std::vector<StateCount> states;
  for (const std::string_view state :
       {done, doneUnlessUndone, notCommitted, rolledBack, failed, cancelled, notRun})
    states.push_back({state, std::ranges::count(Items(), state, &Item::state)});
  return WithStates(std::to_string(Items().size()) + " statements", states);
}

std::shared_ptr<Recordset> StatementList::RowsOf(Bookmark row) const {
  const CommandResult* result = Items().at(static_cast<std::size_t>(row - 1)).result;
  return result == nullptr ? nullptr : result->rows;
}

// --- as a sentence -------------------------------------------------------------------------------

std::string StatementList::StopText() const {
  if (!operation_->Stop() || Statements().size() < 2) return {};
  return WhatStopped() + WhatBecameOfOthers();
}

std::string StatementList::WhatStopped() const {
  const auto& [number, begin, end] = operation_->Stop()->statement;
  const std::string count = std::to_string(Statements().size());
  const std::string state(StateOfStopped());
  if (number == 0) return "Which of the " + count + " statements " + state + " is not known.";
  const std::string_view text = sql_;
  return "Statement " + std::to_string(number) + " of " + count + " " + state + " (line " +
         std::to_string(LineEnds(text.substr(0, begin)) + 1) +
         "): " + FirstWords(text.substr(begin, end - begin), fewBytes);
}

std::string StatementList::WhatBecameOfOthers() const {
  const TextStop& stop = *operation_->Stop();
  const std::int64_t before = stop.statement.number - 1;
  if (before <= 0) return {};
  if (operation_->Results().empty()) return ". None of the statements was run.";
  const std::int64_t kept = std::min(stop.keptUpTo.value_or(0), before);
  std::string text = ".";
  if (kept > 0) text += " " + Range(1, kept) + (kept == 1 ? " stays done." : " stay done.");
  if (kept == before) return text;
  const bool one = kept + 1 == before;
  text += " " + Range(kept + 1, before);
  switch (stop.keptUpTo ? stop.transaction : UserTransaction::Unknown) {
    case UserTransaction::None:
    case UserTransaction::Waiting: return text + (one ? " was" : " were") + " rolled back.";
    case UserTransaction::Open:
      return text + (one ? " waits" : " wait") + " for COMMIT or ROLLBACK.";
    case UserTransaction::Failed:
      return text + (one ? " is" : " are") + " undone by ROLLBACK, which has to come next.";
    case UserTransaction::Unknown: break;
  }
  return text + " may be undone: the database does not tell.";
}

}  // namespace tessel
