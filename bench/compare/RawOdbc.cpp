#include <array>
#include <stdexcept>

#include <sql.h>
#include <sqlext.h>

#include "bench/OrdersFile.h"
#include "bench/compare/RawLoops.h"
#include "bench/compare/Say.h"

namespace tessel::bench {

namespace {

constexpr std::size_t columns = 10;

struct BoundColumn {
  std::array<char, 256> buffer{};
  SQLLEN indicator = 0;
};

void Check(SQLRETURN code, const char* function) {
  if (!SQL_SUCCEEDED(code)) throw std::runtime_error(std::string(function) + " failed");
}

SQLCHAR* Text(const std::string& text) {
  return reinterpret_cast<SQLCHAR*>(const_cast<char*>(text.c_str()));
}

/// One connection and one statement; the process ends soon after.
struct Session {
  SQLHENV environment = SQL_NULL_HENV;
  SQLHDBC connection = SQL_NULL_HDBC;
  SQLHSTMT statement = SQL_NULL_HSTMT;

  explicit Session(const std::string& connectionString) {
    SQLAllocHandle(SQL_HANDLE_ENV, SQL_NULL_HANDLE, &environment);
    SQLSetEnvAttr(environment, SQL_ATTR_ODBC_VERSION, reinterpret_cast<SQLPOINTER>(SQL_OV_ODBC3),
                  0);
    SQLAllocHandle(SQL_HANDLE_DBC, environment, &connection);
    Check(SQLDriverConnect(connection, nullptr, Text(connectionString), SQL_NTS, nullptr, 0,
                           nullptr, SQL_DRIVER_NOPROMPT),
          "SQLDriverConnect");
    SQLAllocHandle(SQL_HANDLE_STMT, connection, &statement);
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    SQLFreeHandle(SQL_HANDLE_STMT, statement);
    SQLDisconnect(connection);
    SQLFreeHandle(SQL_HANDLE_DBC, connection);
    SQLFreeHandle(SQL_HANDLE_ENV, environment);
  }
};

}  // namespace

/// All columns are bound as text and one row is fetched at a time, as the provider has to do.
RawBlocks ReadOdbcOrders(const std::string& connectionString) {
  const Session session(connectionString);
  std::array<BoundColumn, columns> bound;
  const Stopwatch watch;
  RawBlocks blocks;
  Check(SQLExecDirect(session.statement, Text(ordersQuery), SQL_NTS), "SQLExecDirect");
  for (std::size_t i = 0; i < columns; ++i)
    Check(SQLBindCol(session.statement, static_cast<SQLUSMALLINT>(i + 1), SQL_C_CHAR,
                     bound[i].buffer.data(), static_cast<SQLLEN>(bound[i].buffer.size()),
                     &bound[i].indicator),
          "SQLBindCol");
  while (SQL_SUCCEEDED(SQLFetch(session.statement)))
    AddRowOfTexts(blocks.ForNextRow(), [&](int column) -> std::optional<std::string_view> {
      const BoundColumn& cell = bound[static_cast<std::size_t>(column)];
      if (cell.indicator == SQL_NULL_DATA) return std::nullopt;
      return std::string_view(cell.buffer.data(), static_cast<std::size_t>(cell.indicator));
    });
  SQLCloseCursor(session.statement);
  Say("seconds", watch.Seconds());
  return blocks;
}

}  // namespace tessel::bench
