#include "logic/connections/link/ServerTalk.h"

#include <utility>

#include "contract/base/Value.h"

namespace tessel {

namespace {

std::vector<std::string> NamesIn(const Recordset& catalogs) {
  std::vector<std::string> names;
  const auto field = catalogs.FindField("CATALOG_NAME");
  for (std::int64_t row = 0; field && row < catalogs.RecordCount(); ++row)
    names.push_back(ToText(catalogs.ValueAt(row, *field)));
  return names;
}

}  // namespace

void ServerTalk::Start(const std::string& connectionString, const TypedLogin& login,
                       bool listDatabases, Told told) {
  LetGo();
  told_ = std::move(told);
  connection_ = data_.CreateConnection();
  connection_->SetConnectionString(connectionString);
  try {
    operation_ = connection_->StartOpen(login.user, login.password);
    operation_->Ended = [this, listDatabases] { Opened(listDatabases); };
  } catch (const Error& error) {
    Conclude({error.Description()});
  }
}

void ServerTalk::Cancel() {
  if (operation_ != nullptr) operation_->Cancel();
}

void ServerTalk::Leave() {
  told_ = nullptr;
  Cancel();
}

void ServerTalk::LetGo() {
  told_ = nullptr;
  listing_ = nullptr;
  operation_ = nullptr;
  connection_ = nullptr;
}

void ServerTalk::Opened(bool listDatabases) {
  const Result result = ResultOf(*operation_);
  if (result.failure || result.cancelled || !listDatabases) return Conclude(result);
  try {
    listing_ = connection_->StartSchema(SchemaRowset::Catalogs, {});
    operation_ = listing_;
    operation_->Ended = [this] { Listed(); };
  } catch (const Error&) {
    Conclude({});
  }
}

void ServerTalk::Listed() {
  Result result = ResultOf(*operation_);
  result.failure.reset();  // It has connected all the same.
  const std::shared_ptr<Recordset> catalogs = listing_->FirstRows();
  if (catalogs != nullptr) result.databases = NamesIn(*catalogs);
  Conclude(std::move(result));
}

ServerTalk::Result ServerTalk::ResultOf(const Operation& operation) const {
  Result result;
  result.cancelled = operation.Outcome() == OperationOutcome::Cancelled;
  if (operation.Outcome() == OperationOutcome::Failed)
    result.failure = operation.Failure()->description;
  return result;
}

/// Whoever is told may begin the next talk.
void ServerTalk::Conclude(Result result) {
  const Told told = std::move(told_);
  LetGo();
  if (told) told(result);
}

}  // namespace tessel
