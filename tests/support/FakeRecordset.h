#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Connection.h"
#include "platform/Recordset.h"
#include "tests/support/FakeServer.h"

namespace tessel::test {

class FakeConnection;

/// The rows that a recordset and its clones share. Row i has the bookmark i + 1.
struct FakeStore {
  std::vector<FieldInfo> fields;
  std::shared_ptr<FakeRows> rows = std::make_shared<FakeRows>();  ///< All that the server has.
  std::size_t fetched = 0;                                        ///< Those that arrived.
  Properties properties;
};

class FakeRecordset final : public Recordset, public std::enable_shared_from_this<FakeRecordset> {
 public:
  explicit FakeRecordset(std::weak_ptr<FakeConnection> connection);
  ~FakeRecordset() override;

  [[nodiscard]] const std::string& Source() const override { return source_; }
  void SetSource(std::string commandText) override;
  [[nodiscard]] std::shared_ptr<Connection> ActiveConnection() const override;
  void SetCursorType(CursorType /*type*/) override {}
  void SetLockType(LockType type) override { lock_ = type; }
  [[nodiscard]] LockType Lock() const override { return lock_; }
  void Open(int options) override;
  void Cancel() override;
  void Close() override;
  [[nodiscard]] int State() const override { return state_; }

  [[nodiscard]] const std::vector<FieldInfo>& Fields() const override;
  [[nodiscard]] std::optional<std::size_t> FindField(std::string_view name) const override;
  [[nodiscard]] std::int64_t RecordCount() const override;
  [[nodiscard]] ValueView ValueAt(std::int64_t position, std::size_t field) const override;
  [[nodiscard]] Bookmark BookmarkAt(std::int64_t position) const override;
  [[nodiscard]] std::optional<std::int64_t> PositionOf(Bookmark bookmark) const override;

  [[nodiscard]] bool Bof() const override { return RecordCount() == 0 || position_ < 0; }
  [[nodiscard]] bool Eof() const override { return position_ >= RecordCount(); }
  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  [[nodiscard]] Bookmark CurrentBookmark() const override;
  void MoveTo(Bookmark bookmark) override;
  [[nodiscard]] ValueView FieldValue(std::size_t field) const override;
  [[nodiscard]] std::int64_t ActualSize(std::size_t field) const override;

  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType lock) override;
  void SetSort(const std::string& order) override;
  [[nodiscard]] EditMode Editing() const override { return EditMode::None; }
  void AddNew() override;
  void SetFieldValue(std::size_t field, Value value) override;
  void Update(int options) override;
  void CancelUpdate() override;
  void Delete(int options) override;
  [[nodiscard]] const Properties& RecordsetProperties() const override {
    return store_->properties;
  }

  /// What Open reads in place of the source; nothing: the source.
  using SchemaRequest = std::pair<SchemaRowset, std::vector<std::string>>;
  [[nodiscard]] const std::optional<SchemaRequest>& Schema() const { return schema_; }
  void SetSchema(SchemaRowset schema, std::vector<std::string> restrictions) {
    schema_.emplace(schema, std::move(restrictions));
  }

  // --- for the connection; `operation` is the one that the rows come from
  // --------------------------
  void BeginExecute(const void* operation);
  void BeginRows(const void* operation, const FakeResult& result);
  void AddRows(const void* operation, std::size_t fetched);
  void EndRows(const void* operation, const FakeResult& result);
  /// Opens with rows that are all there.
  void Fill(const FakeResult& result);

 private:
  struct SortField {
    std::size_t field = 0;
    bool descending = false;
  };

  void RequireOpen() const;
  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const;
  [[nodiscard]] std::vector<SortField> ParseSort(std::string_view order) const;
  void ApplySort();

  std::weak_ptr<FakeConnection> connection_;
  std::string source_;
  std::optional<SchemaRequest> schema_;
  LockType lock_ = LockType::ReadOnly;
  int state_ = objectState::closed;
  const void* operation_ = nullptr;
  std::shared_ptr<FakeStore> store_ = std::make_shared<FakeStore>();
  std::vector<SortField> sort_;
  std::vector<std::int64_t> order_;  ///< Row numbers by position; empty: as they arrived.
  std::int64_t position_ = 0;
};

}  // namespace tessel::test
