#include "tests/support/DataSteps.h"

namespace tessel::test {

int StartedQuery::State() const {
  if (const std::shared_ptr<Recordset> rows = Rows()) return rows->State();
  const std::shared_ptr<Connection> connection = operation_->ActiveConnection();
  const bool runs = connection && (connection->State() & objectState::executing) != 0;
  return runs && !operation_->HasEnded() ? objectState::executing : objectState::closed;
}

void OpenNow(Connection& connection, const std::string& user, const std::string& password) {
  Finish(*connection.StartOpen(user, password));
}

StartedQuery QueryNow(Connection& connection, const std::string& sql, LockType lock) {
  StartedQuery query(connection.StartQuery(sql, lock));
  Finish(query.Operation());
  return query;
}

std::shared_ptr<Recordset> ReadSchema(Connection& connection, SchemaRowset schema,
                                      const std::vector<std::string>& restrictions) {
  const auto operation = connection.StartSchema(schema, restrictions);
  Finish(*operation);
  return operation->FirstRows();
}

void UseCatalog(Connection& connection, const std::string& name) {
  Finish(*connection.StartUseCatalog(name));
}

void Update(Recordset& recordset) { Finish(*recordset.StartUpdate()); }

void Delete(Recordset& recordset) { Finish(*recordset.StartDelete()); }

}  // namespace tessel::test
