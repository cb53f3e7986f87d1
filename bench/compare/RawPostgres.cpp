#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

#include <libpq-fe.h>

#include "bench/OrdersFile.h"
#include "bench/compare/RawLoops.h"
#include "bench/compare/Say.h"
#include "data/providers/postgresql/PostgresSchema.h"
#include "data/providers/postgresql/client/PostgresKeys.h"

namespace tessel::bench {

namespace {

using Session = std::unique_ptr<PGconn, decltype(&::PQfinish)>;

Session Connect(const std::string& connectionString) {
  const auto target = PostgresTarget::FromKeys(ConnectionKeys::Parse(connectionString));
  std::vector<const char*> names;
  std::vector<const char*> values;
  for (const PqKeyword& keyword : target.keywords) {
    names.push_back(keyword.name.c_str());
    values.push_back(keyword.value.c_str());
  }
  names.push_back(nullptr);
  values.push_back(nullptr);
  Session session(::PQconnectdbParams(names.data(), values.data(), 0), ::PQfinish);
  if (::PQstatus(session.get()) != CONNECTION_OK)
    throw std::runtime_error(::PQerrorMessage(session.get()));
  return session;
}

std::optional<std::string_view> CellOf(const PGresult* row, int column) {
  if (::PQgetisnull(row, 0, column) != 0) return std::nullopt;
  return std::string_view(::PQgetvalue(row, 0, column),
                          static_cast<std::size_t>(::PQgetlength(row, 0, column)));
}

RawBlocks ReadOrders(PGconn* session) {
  RawBlocks blocks;
  ::PQsendQuery(session, ordersQuery);
  ::PQsetSingleRowMode(session);
  while (PGresult* row = ::PQgetResult(session)) {
    if (::PQresultStatus(row) == PGRES_SINGLE_TUPLE)
      AddRowOfTexts(blocks.ForNextRow(), [row](int column) { return CellOf(row, column); });
    ::PQclear(row);
  }
  return blocks;
}

std::int64_t LookAtRows(PGconn* session, const std::string& sql) {
  const char* all[] = {"", ""};
  PGresult* result = ::PQexecParams(session, sql.c_str(), 2, nullptr, all, nullptr, nullptr, 0);
  if (::PQresultStatus(result) != PGRES_TUPLES_OK)
    throw std::runtime_error(::PQerrorMessage(session));
  const int rows = ::PQntuples(result);
  const int columns = ::PQnfields(result);
  std::size_t sum = 0;
  for (int row = 0; row < rows; ++row)
    for (int column = 0; column < columns; ++column)
      sum += static_cast<std::size_t>(::PQgetlength(result, row, column));
  ::PQclear(result);
  if (sum == 0) throw std::runtime_error("The catalog is empty.");
  return rows;
}

}  // namespace

RawBlocks ReadPostgresOrders(const std::string& connectionString) {
  const Session session = Connect(connectionString);
  const Stopwatch watch;
  RawBlocks blocks = ReadOrders(session.get());
  Say("seconds", watch.Seconds());
  return blocks;
}

std::int64_t ReadPostgresOrdersTogether(const std::string& connectionString, std::size_t count) {
  std::vector<Session> sessions;
  while (sessions.size() < count) sessions.push_back(Connect(connectionString));
  std::vector<RawBlocks> results(count);
  const Stopwatch watch;
  {
    std::vector<std::jthread> threads;
    for (std::size_t i = 0; i < count; ++i)
      threads.emplace_back([&, i] { results[i] = ReadOrders(sessions[i].get()); });
  }
  Say("seconds", watch.Seconds());
  std::int64_t rows = 0;
  for (const RawBlocks& blocks : results) rows += blocks.Rows();
  return rows;
}

std::int64_t ReadPostgresCatalog(const std::string& connectionString) {
  const Session session = Connect(connectionString);
  const Stopwatch watch;
  std::int64_t rows = LookAtRows(session.get(), PostgresSchemaQuery(SchemaRowset::Tables));
  rows += LookAtRows(session.get(), PostgresSchemaQuery(SchemaRowset::Columns));
  Say("seconds", watch.Seconds());
  return rows;
}

}  // namespace tessel::bench
