#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "data/changes/RowStatement.h"
#include "data/providers/memory/MemoryServer.h"

namespace tessel {

/// How changes of rows are written for a server in memory.
[[nodiscard]] WriteDialect MemoryDialect();

/// Carries out the statements that RowSql makes in MemoryDialect, on the rows of the server's
/// results. A statement of any other form raises Error. Keeps what a transaction has to undo.
class MemoryWriter {
 public:
  explicit MemoryWriter(MemoryServer& server) : server_(server) {}

  [[nodiscard]] StatementResult Run(const RowStatement& statement);
  /// Begins or ends a transaction or savepoint, one at a time.
  void Control(std::string_view sql);

 private:
  class Reader;
  struct Cell {
    std::size_t field = 0;
    Value value;
  };
  /// The rows of a table as they were before the transaction changed them.
  struct Before {
    std::shared_ptr<MemoryRows> rows;
    MemoryRows values;
  };

  [[nodiscard]] StatementResult Insert(Reader& reader);
  [[nodiscard]] StatementResult Create(Reader& reader);
  [[nodiscard]] StatementResult Update(Reader& reader);
  [[nodiscard]] StatementResult Delete(Reader& reader);
  [[nodiscard]] MemoryResult& ReadTable(Reader& reader);
  [[nodiscard]] static bool Meets(const MemoryRow& row, const std::vector<Cell>& conditions);
  void Undo();

  MemoryServer& server_;
  std::vector<Before> before_;
};

}  // namespace tessel
