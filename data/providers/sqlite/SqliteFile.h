#pragma once

#include <chrono>
#include <string>

#include "data/providers/ConnectionMode.h"
#include "data/providers/sqlite/SqliteApi.h"
#include "data/providers/text/ConnectionKeys.h"

namespace tessel {

/// What a connection string asks to be opened, and how.
struct SqliteFile {
  std::string name;
  ConnectionMode mode = ConnectionMode::ReadWrite;
  std::chrono::milliseconds lockPatience{5000};

  /// Raises Error with what to do about it when a key is missing or wrong, when there is no such
  /// file, or when it cannot be one.
  [[nodiscard]] static SqliteFile FromKeys(const ConnectionKeys& keys);

  /// As SqliteDatabase takes them.
  [[nodiscard]] int Flags() const;
  /// Looks into the file, which SQLite puts off; raises Error when it is no database, damaged or
  /// locked.
  void Check(SqliteDatabase& database) const;
};

}  // namespace tessel
