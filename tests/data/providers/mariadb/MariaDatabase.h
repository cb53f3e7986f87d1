#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tests/data/providers/ServerSql.h"
#include "tests/data/providers/native/NativeServers.h"

namespace tessel::test {

/// The test server, through its native provider.
class MariaDatabase : public MariaSql {
 public:
  [[nodiscard]] std::string ConnectionString() const override {
    return MariaNative().ConnectionString();
  }
  [[nodiscard]] std::string BadConnectionString() const override {
    return ConnectionString() + "x";  // The password is wrong.
  }
  [[nodiscard]] std::string SlowStatement() const override { return MariaNative().sleep; }
  /// A query of more than one row where one was to be.
  [[nodiscard]] std::string FailsAfter(std::int64_t goodRows) const override {
    return "select seq as n, if(seq <= " + std::to_string(goodRows) +
           ", 0, (select seq from seq_1_to_2)) as q from seq_1_to_" + std::to_string(2 * goodRows);
  }
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::string LongTextType() const override { return "longtext"; }
  void KillServer() override { MariaNative().server().Kill(); }
  void RestartServer() override { MariaNative().server().Restart(); }
};

}  // namespace tessel::test
