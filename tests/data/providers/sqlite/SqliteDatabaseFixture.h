#pragma once

#include "tests/data/support/Database.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

/// A file of the native SQLite provider in a folder of its own.
class SqliteScratch : public Database {
 public:
  [[nodiscard]] DatabaseTraits Traits() const override {
    return {.limitsText = false, .hasServer = false};
  }
  [[nodiscard]] std::string ConnectionString() const override;
  [[nodiscard]] std::string BadConnectionString() const override;
  [[nodiscard]] std::string SlowStatement() const override;
  [[nodiscard]] std::string Series(std::int64_t rows) const override;
  [[nodiscard]] std::string LongText(std::size_t length) const override;
  [[nodiscard]] std::string LongBinary(std::size_t length) const override;
  [[nodiscard]] std::string FailsAfter(std::int64_t goodRows) const override;
  [[nodiscard]] std::vector<TypeCase> TypeCases() const override;
  [[nodiscard]] std::string CountedKeyType() const override { return "integer primary key"; }
  [[nodiscard]] std::string BeginStatement() const override { return "begin immediate"; }
  [[nodiscard]] std::string TableCatalog() const override { return "main"; }

 private:
  TemporaryFolder folder_;
};

}  // namespace tessel::test
