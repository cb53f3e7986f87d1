#pragma once

#include <memory>
#include <string>

#include "contract/data/Connection.h"

namespace tessel {

/// What the schema browser asks of the frame.
class SchemaHost {
 public:
  /// The connection of the records window of that number; null when there is no such window.
  [[nodiscard]] virtual std::shared_ptr<Connection> ConnectionOf(int windowNumber) = 0;
  virtual void FocusQueryWindow() = 0;
  /// Asks what is to be imported into that table, as it is listed, and does it; empty: one that is
  /// chosen then.
  virtual void ImportRecords(const std::string& databaseKey, const std::string& table) = 0;

 protected:
  ~SchemaHost() = default;
};

}  // namespace tessel
