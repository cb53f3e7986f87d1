#pragma once

#include <memory>
#include <string>

#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/schema/SchemaTree.h"

namespace tessel {

/// Reads the tables and fields of a database over an open connection into the schema browser.
class SchemaLoading {
 public:
  /// All outlive this object.
  SchemaLoading(const Global& global, dlgAsync& async, SchemaTree& tree)
      : help_(global), async_(async), tree_(tree) {}

  /// Replaces what hangs on the database node. True when the schema was read, as far as the user
  /// let it; false, with the node as far as it was filled, when it could not be read (the failure
  /// has been shown), when its query was cancelled, or when the user declined the second way to
  /// read the fields.
  bool LoadSchemaFromDB(const std::string& databaseKey,
                        const std::shared_ptr<Connection>& connection);
  /// Whether the last load read everything: it neither failed nor was cancelled on its way.
  [[nodiscard]] bool Complete() const { return complete_; }

 private:
  Help help_;
  dlgAsync& async_;
  SchemaTree& tree_;
  bool complete_ = false;
};

}  // namespace tessel
