#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/Recordset.h"
#include "contract/data/RowArrangement.h"

namespace tessel::test {

/// A recordset of any number of rows whose values are worked out when they are asked for, and that
/// counts how often.
class GeneratedRows final : public Recordset {
 public:
  using Make = std::function<ValueView(std::int64_t row, std::size_t field)>;

  GeneratedRows(std::vector<FieldInfo> fields, std::int64_t rows, Make make)
      : fields_(std::move(fields)), rows_(rows), make_(std::move(make)) {}

  /// How many values have been read so far.
  [[nodiscard]] std::int64_t Reads() const { return reads_; }
  /// From now on every move of the record fails with that description.
  void RefuseMoves(std::string description) { refusal_ = std::move(description); }

  [[nodiscard]] const std::string& Source() const override { return source_; }
  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override { return nullptr; }
  [[nodiscard]] LockType Lock() const override { return LockType::ReadOnly; }
  void Close() override { state_ = objectState::closed; }
  [[nodiscard]] int State() const override { return state_; }

  [[nodiscard]] const std::vector<FieldInfo>& Fields() const override { return fields_; }
  [[nodiscard]] std::optional<std::size_t> FindField(std::string_view name) const override;
  [[nodiscard]] std::int64_t RecordCount() const override { return rows_; }
  [[nodiscard]] std::int64_t FullCount() const override { return rows_; }
  [[nodiscard]] ValueView ValueAt(std::int64_t position, std::size_t field) const override;
  void ReadFieldsAt(std::int64_t position, std::size_t first,
                    std::span<ValueView> values) const override {
    for (ValueView& value : values) value = ValueAt(position, first++);
  }
  /// Far from the positions, so that the two cannot be mistaken for each other.
  [[nodiscard]] Bookmark BookmarkAt(std::int64_t position) const override {
    return position + offset;
  }
  [[nodiscard]] std::optional<std::int64_t> PositionOf(Bookmark bookmark) const override;

  [[nodiscard]] bool Bof() const override { return at_ < 0; }
  [[nodiscard]] bool Eof() const override { return at_ >= rows_; }
  void MoveFirst() override { at_ = 0; }
  void MoveLast() override { at_ = rows_ - 1; }
  void MoveNext() override { ++at_; }
  void MovePrevious() override { --at_; }
  [[nodiscard]] Bookmark CurrentBookmark() const override { return BookmarkAt(at_); }
  void MoveTo(Bookmark bookmark) override;
  [[nodiscard]] ValueView FieldValue(std::size_t field) const override {
    return ValueAt(at_, field);
  }
  void ReadFields(std::size_t first, std::span<ValueView> values) const override {
    for (ValueView& value : values) value = FieldValue(first++);
  }
  [[nodiscard]] std::int64_t ActualSize(std::size_t /*field*/) const override { return 0; }
  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType /*lock*/) override;
  void SetSort(const std::string& /*order*/) override {}
  [[nodiscard]] const RowArrangement& Arrangement() const override { return arrangement_; }
  [[nodiscard]] std::unique_ptr<RowWork> StartArrange(RowArrangement /*arrangement*/) override {
    return nullptr;
  }
  [[nodiscard]] std::unique_ptr<RowWork> StartSearch(CellSearch /*search*/) const override {
    return nullptr;
  }
  /// Says that the rows are arranged so; they stay where they are.
  void PretendArranged(RowArrangement arrangement) { arrangement_ = std::move(arrangement); }
  void PretendCount(std::int64_t rows) { rows_ = rows; }
  [[nodiscard]] std::optional<ErrorInfo> WhyNotChangeable() const override {
    return Error(errorNumber::readOnly, "GeneratedRows", "The rows are made up.").Info();
  }
  [[nodiscard]] EditMode Editing() const override { return EditMode::None; }
  void AddNew() override {}
  void SetFieldValue(std::size_t /*field*/, Value /*value*/) override {}
  [[nodiscard]] std::shared_ptr<Operation> StartUpdate() override { return nullptr; }
  void CancelUpdate() override {}
  [[nodiscard]] std::shared_ptr<Operation> StartDelete() override { return nullptr; }
  [[nodiscard]] const Properties& RecordsetProperties() const override { return properties_; }

 private:
  static constexpr Bookmark offset = 1000;

  std::vector<FieldInfo> fields_;
  std::int64_t rows_;
  Make make_;
  std::string source_;
  std::int64_t at_ = 0;
  int state_ = objectState::open;
  mutable std::int64_t reads_ = 0;
  std::string refusal_;
  RowArrangement arrangement_;
  Properties properties_;
};

[[nodiscard]] FieldInfo FieldNamed(std::string name, DataType type);

/// Ten fields as they occur: a number, names, an amount, a date, notes with line ends, nulls, empty
/// texts, long texts.
[[nodiscard]] std::shared_ptr<GeneratedRows> OrdersOf(std::int64_t rows);

}  // namespace tessel::test
