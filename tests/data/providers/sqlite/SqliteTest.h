#pragma once

#include <string>

#include "tests/data/support/DataTest.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

/// The native SQLite provider, with a folder for its files.
class SqliteTest : public DataTest {
 protected:
  [[nodiscard]] std::string File(const std::string& name) const { return folder_.File(name); }
  /// A connection string for a file of the folder.
  [[nodiscard]] std::string StringOf(const std::string& name, const std::string& more = {}) const {
    return "Provider=SQLite;Data Source=" + File(name) + ";" + more;
  }
  /// Opens a file of the folder, which is made when it is missing.
  [[nodiscard]] std::shared_ptr<Connection> OpenFile(const std::string& name,
                                                     const std::string& more = {}) {
    return ConnectTo(StringOf(name, "Mode=ReadWriteCreate;" + more));
  }
  [[nodiscard]] std::shared_ptr<Connection> OpenMemory() {
    return ConnectTo("Provider=SQLite;Data Source=:memory:");
  }
  /// The error of opening.
  [[nodiscard]] ErrorInfo FailureOf(const std::string& connectionString) {
    return ErrorOf([&] { (void)ConnectTo(connectionString); });
  }

  TemporaryFolder folder_;
};

}  // namespace tessel::test
