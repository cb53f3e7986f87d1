#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/base/Value.h"
#include "contract/data/Operation.h"

namespace tessel {

// Loading: many rows go into one table, as one piece of work of a connection's worker
// (Connection::StartLoad). The worker asks a feed for rows, some at a time, and hands them to the
// database; it asks for more when the database has taken those, so that the memory needed does not
// grow with the rows.

/// A column of the table that rows are loaded into.
struct LoadColumn {
  std::string name;                    ///< As the table has it, without quotes.
  DataType type = DataType::VarWChar;  ///< What it holds.
};

/// Some of the rows, in their order.
struct LoadBatch {
  /// Row by row, each with a value for every column. They look at what belongs to the feed.
  std::vector<ValueView> cells;
  /// Of each row: the line of its source at which it begins, from 1.
  std::vector<std::int64_t> lines;

  [[nodiscard]] std::size_t Rows() const { return lines.size(); }
  /// Makes it empty and keeps the room that it has, for the rows that come next.
  void Clear() {
    cells.clear();
    lines.clear();
  }
};

/// Where rows come from. It is made on the UI thread and belongs to the connection's worker from
/// StartLoad to the end of the operation: only then may another thread use it again.
class RowFeed {
 public:
  virtual ~RowFeed() = default;

  /// Adds the next rows, at least one, to `batch`, which is empty; false: there are no more. What
  /// the cells look at stays until the next call. A call takes a few milliseconds, so that a cancel
  /// is heard soon. Raises Error, whose text names the place, for what cannot be read.
  [[nodiscard]] virtual bool Next(LoadBatch& batch) = 0;
};

/// What is to be loaded, and how.
struct LoadRequest {
  std::string table;                ///< As it stands in SQL, in quotes where it needs them.
  std::vector<LoadColumn> columns;  ///< Those that are given values; at least one.
  std::shared_ptr<RowFeed> rows;    ///< Asked once, from its beginning to its end.
  /// The statement that makes the table first; empty: it is there.
  std::string createTable = {};
  /// 0: all rows or none stay, in one transaction. Else there is a transaction for each so many
  /// rows, or a few more, and those that were ended outlive a failure or a cancel.
  std::int64_t commitRows = 0;
  /// Where the server takes a file that the client sends (LOAD DATA LOCAL) the rows go that way;
  /// other databases take no notice of it.
  bool asFile = false;
};

/// A row that the database did not take.
struct RefusedRow {
  std::int64_t line = 0;  ///< Of its source, from 1.
  std::string column;     ///< The table's name of it; empty where the database does not tell.
};

/// A load under way. Rows tells how many the database has been given; its phase is Writing.
class LoadOperation : public Operation {
 public:
  /// Rows that stay, whatever becomes of the others; those of a transaction that the user has open
  /// stay as long as that does. Only after the end.
  [[nodiscard]] std::int64_t RowsKept() const { return rowsKept_; }
  /// The row because of which it failed, where the database tells it. Only after the end.
  [[nodiscard]] const std::optional<RefusedRow>& Refused() const { return refused_; }

 protected:
  LoadOperation() : Operation(OperationPhase::Writing) {}

  // For implementations, as those of Operation: they only take down what is to be told, and are
  // called before the end is.
  void SetRowsKept(std::int64_t rows) { rowsKept_ = rows; }
  void SetRefused(std::optional<RefusedRow> row) { refused_ = std::move(row); }

 private:
  std::int64_t rowsKept_ = 0;
  std::optional<RefusedRow> refused_;
};

}  // namespace tessel
