#pragma once

#include <functional>
#include <memory>

#include "contract/data/Recordset.h"
#include "contract/data/RowArrangement.h"

namespace tessel {

/// The current record of other rows, turned over: a row for each of its fields, with the columns
/// "Field" and "Value". It copies nothing: what is read is read there, and what is set is set
/// there, pending as any change of that record. Positions are field numbers. It is of no use once
/// the rows are closed.
///
/// WhyNotChangeable speaks of the field that is current here, too: bytes and fields that cannot be
/// updated give their reason before anything is typed.
class RecordFields final : public Recordset {
 public:
  static constexpr std::size_t nameField = 0;
  static constexpr std::size_t valueField = 1;

  /// `onEmptyNewRow` tells whether the record is one that is not begun yet: its values are null,
  /// and the first that is set begins it.
  RecordFields(std::shared_ptr<Recordset> rows, std::function<bool()> onEmptyNewRow);

  /// The field that is current; not at BOF or EOF.
  [[nodiscard]] const FieldInfo& CurrentField() const;

  [[nodiscard]] const std::string& Source() const override { return rows_->Source(); }
  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override {
    return rows_->ActiveConnection();
  }
  [[nodiscard]] LockType Lock() const override { return rows_->Lock(); }
  void Close() override { closed_ = true; }
  [[nodiscard]] int State() const override;

  [[nodiscard]] const std::vector<FieldInfo>& Fields() const override { return columns_; }
  [[nodiscard]] std::optional<std::size_t> FindField(std::string_view name) const override;
  [[nodiscard]] std::int64_t RecordCount() const override;
  [[nodiscard]] std::int64_t FullCount() const override { return RecordCount(); }
  [[nodiscard]] ValueView ValueAt(std::int64_t position, std::size_t field) const override;
  void ReadFieldsAt(std::int64_t position, std::size_t first,
                    std::span<ValueView> values) const override;
  [[nodiscard]] Bookmark BookmarkAt(std::int64_t position) const override;
  [[nodiscard]] std::optional<std::int64_t> PositionOf(Bookmark bookmark) const override;

  [[nodiscard]] bool Bof() const override { return current_ < 0 || RecordCount() == 0; }
  [[nodiscard]] bool Eof() const override { return current_ >= RecordCount(); }
  void MoveFirst() override { current_ = 0; }
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  [[nodiscard]] Bookmark CurrentBookmark() const override { return BookmarkAt(current_); }
  void MoveTo(Bookmark bookmark) override;
  [[nodiscard]] ValueView FieldValue(std::size_t field) const override {
    return ValueAt(current_, field);
  }
  void ReadFields(std::size_t first, std::span<ValueView> values) const override;
  [[nodiscard]] std::int64_t ActualSize(std::size_t field) const override;

  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType lock) override;
  /// The fields keep their order.
  void SetSort(const std::string& order) override;
  [[nodiscard]] const RowArrangement& Arrangement() const override { return arrangement_; }
  [[nodiscard]] std::unique_ptr<RowWork> StartArrange(RowArrangement arrangement) override;
  [[nodiscard]] std::unique_ptr<RowWork> StartSearch(CellSearch search) const override;

  [[nodiscard]] std::optional<ErrorInfo> WhyNotChangeable() const override;
  [[nodiscard]] EditMode Editing() const override { return rows_->Editing(); }
  void AddNew() override;
  void SetFieldValue(std::size_t field, Value value) override;
  [[nodiscard]] std::shared_ptr<Operation> StartUpdate() override { return rows_->StartUpdate(); }
  void CancelUpdate() override { rows_->CancelUpdate(); }
  [[nodiscard]] std::shared_ptr<Operation> StartDelete() override;
  [[nodiscard]] const Properties& RecordsetProperties() const override { return properties_; }

 private:
  [[nodiscard]] bool HasRecord() const;

  std::shared_ptr<Recordset> rows_;
  std::function<bool()> onEmptyNewRow_;
  std::vector<FieldInfo> columns_;
  Properties properties_;
  RowArrangement arrangement_;  ///< None.
  std::int64_t current_ = 0;
  bool closed_ = false;
};

}  // namespace tessel
