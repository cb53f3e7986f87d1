#pragma once

#include <memory>

#include "data/combined/FixedRows.h"
#include "data/cursor/rows/RowCursor.h"

namespace tessel {

/// A read-only recordset, without a connection, over rows that do not change. UI thread.
class FixedRecordset final : public RowCursor {
 public:
  explicit FixedRecordset(std::shared_ptr<const FixedRows> rows);

  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override { return nullptr; }
  void Close() override;
  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType lock) override;

  [[nodiscard]] std::optional<ErrorInfo> WhyNotChangeable() const override;
  [[nodiscard]] EditMode Editing() const override;
  void AddNew() override;
  void SetFieldValue(std::size_t field, Value value) override;
  [[nodiscard]] std::shared_ptr<Operation> StartUpdate() override;
  void CancelUpdate() override;
  [[nodiscard]] std::shared_ptr<Operation> StartDelete() override;
  [[nodiscard]] const Properties& RecordsetProperties() const override { return properties_; }

  [[nodiscard]] std::shared_ptr<const FixedRows> RowsForGood() const override;

 private:
  [[noreturn]] void Refuse() const;

  std::shared_ptr<const FixedRows> rows_;
  Properties properties_;
};

}  // namespace tessel
