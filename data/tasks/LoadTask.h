#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "contract/data/BulkLoad.h"
#include "data/providers/Provider.h"
#include "data/tasks/RowTransaction.h"
#include "data/tasks/Task.h"

namespace tessel {

/// Loads rows into a table. A step for the beginning, one for each batch that the feed gives.
///
/// The rows go to the database in sections: at the end of each the database has said of all its
/// rows whether it takes them, so the lines of no more rows than these have to be known. In a load
/// of several transactions each section is one.
class LoadTask : public Task {
 public:
  explicit LoadTask(LoadRequest request) : request_(std::move(request)) {}

  [[nodiscard]] bool Step(ProviderSession& session) override;

  // To be asked for after the end.
  [[nodiscard]] std::int64_t RowsKept() const { return rowsKept_; }
  [[nodiscard]] const std::optional<RefusedRow>& Refused() const { return refused_; }

 private:
  [[nodiscard]] bool Advance(ProviderSession& session);
  void Begin(ProviderSession& session);
  void MakeTable(ProviderSession& session);
  void RequireTransactions(const WriteDialect& dialect) const;
  void AddBatch(ProviderSession& session);
  void EndSection(ProviderSession& session);
  void EndAll(ProviderSession& session);
  void Keep();
  void Leave(ProviderSession& session) noexcept;
  void NoteRefused();
  void TellRows();

  LoadRequest request_;
  std::optional<RowTransaction> transaction_;
  std::unique_ptr<RowLoader> loader_;  ///< Of the present section; null: it has not begun.
  bool begun_ = false;
  bool madeTable_ = false;  ///< It was made, and is there for good.
  LoadBatch batch_;
  std::vector<std::int64_t> lines_;  ///< Of the rows of the section.
  std::int64_t rows_ = 0;
  std::int64_t rowsKept_ = 0;
  std::optional<RefusedRow> refused_;
  std::chrono::steady_clock::time_point lastProgress_;
};

}  // namespace tessel
