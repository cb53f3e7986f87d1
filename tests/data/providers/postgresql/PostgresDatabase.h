#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/data/providers/ServerSql.h"
#include "tests/data/providers/native/NativeServers.h"

namespace tessel::test {

/// The test server, through its native provider.
class PostgresDatabase : public PostgresSql {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.keepsStatementsBeforeError = false};
  }
  [[nodiscard]] std::string ConnectionString() const override {
    return PostgresNative().ConnectionString();
  }
  [[nodiscard]] std::string BadConnectionString() const override {
    return ConnectionString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return PostgresNative().sleep; }
  /// In FROM the server would make all rows before it gives the first.
  [[nodiscard]] std::string Series(std::int64_t rows) const override {
    return "select n, 'row ' || n as t, n / 2e0::double precision as d from (select "
           "generate_series(1, " +
           std::to_string(rows) + ") as n) as s";
  }
  [[nodiscard]] std::string FailsAfter(std::int64_t goodRows) const override {
    return "select n, 1 / (" + std::to_string(goodRows + 1) +
           " - n) as q from (select generate_series(1, " + std::to_string(2 * goodRows) +
           ") as n) as s";
  }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::vector<std::string> TypeSetup() const override {
    return {"do $$ begin create type mood as enum ('sad', 'so so', 'h\u00e4ppy');"
            " exception when duplicate_object then null; end $$",
            "do $$ begin create domain shortage as integer check (value < 0);"
            " exception when duplicate_object then null; end $$",
            "do $$ begin create type pair as (a integer, b text);"
            " exception when duplicate_object then null; end $$"};
  }
  void KillServer() override { PostgresNative().server().Kill(); }
  void RestartServer() override { PostgresNative().server().Restart(); }
};

}  // namespace tessel::test
