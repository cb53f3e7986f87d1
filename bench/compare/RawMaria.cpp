#include <memory>
#include <stdexcept>

#include <mysql.h>

#include "bench/OrdersFile.h"
#include "bench/compare/RawLoops.h"
#include "bench/compare/Say.h"
#include "data/providers/mariadb/MariaKeys.h"

namespace tessel::bench {

namespace {

using Session = std::unique_ptr<MYSQL, decltype(&::mysql_close)>;

Session Connect(const std::string& connectionString) {
  const MariaLogin login = MariaTarget::FromKeys(ConnectionKeys::Parse(connectionString)).login;
  Session session(::mysql_init(nullptr), ::mysql_close);
  ::mysql_options(session.get(), MYSQL_SET_CHARSET_NAME, "utf8mb4");
  if (::mysql_real_connect(session.get(), login.host.c_str(), login.user.c_str(),
                           login.password.c_str(), login.database.c_str(), login.port, nullptr,
                           0) == nullptr)
    throw std::runtime_error(::mysql_error(session.get()));
  return session;
}

}  // namespace

RawBlocks ReadMariaOrders(const std::string& connectionString) {
  const Session session = Connect(connectionString);
  const Stopwatch watch;
  RawBlocks blocks;
  if (::mysql_query(session.get(), ordersQuery) != 0)
    throw std::runtime_error(::mysql_error(session.get()));
  MYSQL_RES* result = ::mysql_use_result(session.get());
  while (MYSQL_ROW row = ::mysql_fetch_row(result)) {
    const unsigned long* lengths = ::mysql_fetch_lengths(result);
    AddRowOfTexts(blocks.ForNextRow(), [&](int column) -> std::optional<std::string_view> {
      if (row[column] == nullptr) return std::nullopt;
      return std::string_view(row[column], lengths[column]);
    });
  }
  ::mysql_free_result(result);
  Say("seconds", watch.Seconds());
  return blocks;
}

}  // namespace tessel::bench
