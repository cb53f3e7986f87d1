#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "contract/data/Connection.h"
#include "contract/data/Recordset.h"
#include "tests/support/MemoryServer.h"

namespace tessel::test {

class FakeConnection;

/// The rows that a recordset and its clones share, and the change that waits to be written. Row i
/// has the bookmark i + 1.
struct FakeStore {
  struct Pending {
    EditMode mode = EditMode::InProgress;
    std::int64_t row = 0;
    std::map<std::size_t, Value> values;
  };

  std::vector<FieldInfo> fields;
  MemoryRows rows;  ///< As they were read; a new one stands behind them, and is gone until written.
  std::size_t fetched = 0;  ///< Those that arrived.
  std::set<std::int64_t> gone;
  std::optional<Pending> pending;
  MemoryResult origin;  ///< What the server has of them.
  std::string catalog;  ///< In use when they were read.
  Properties properties;
  int version = 0;  ///< Grows when rows come or go.
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

  [[nodiscard]] bool Bof() const override {
    return !atNew_ && (RecordCount() == 0 || position_ < 0);
  }
  [[nodiscard]] bool Eof() const override { return !atNew_ && position_ >= RecordCount(); }
  void MoveFirst() override;
  void MoveLast() override;
  void MoveNext() override;
  void MovePrevious() override;
  [[nodiscard]] Bookmark CurrentBookmark() const override;
  void MoveTo(Bookmark bookmark) override;
  [[nodiscard]] ValueView FieldValue(std::size_t field) const override;
  void ReadFields(std::size_t first, std::span<ValueView> values) const override;
  [[nodiscard]] std::int64_t ActualSize(std::size_t field) const override;

  [[nodiscard]] std::shared_ptr<Recordset> Clone(LockType lock) override;
  void SetSort(const std::string& order) override;
  [[nodiscard]] std::optional<ErrorInfo> WhyNotChangeable() const override;
  [[nodiscard]] EditMode Editing() const override;
  void AddNew() override;
  void SetFieldValue(std::size_t field, Value value) override;
  void Update(int options) override;
  void CancelUpdate() override;
  void Delete(int options) override;
  [[nodiscard]] const Properties& RecordsetProperties() const override {
    return store_->properties;
  }

  /// What Open runs in place of the source; null: the source.
  using Request = std::function<MemoryResult(MemoryServer& server)>;
  [[nodiscard]] const Request& RequestInPlace() const { return request_; }
  void SetRequest(Request request) { request_ = std::move(request); }

  // --- for the connection; `operation` is the one that the rows come from
  // --------------------------
  void BeginExecute(const void* operation);
  void BeginRows(const void* operation, const MemoryResult& result);
  void AddRows(const void* operation, std::size_t fetched);
  void EndRows(const void* operation, const MemoryResult& result);
  void BeginChange(const void* operation);
  void EndChange(const void* operation);
  /// Opens with rows that are all there.
  void Fill(const MemoryResult& result);

 private:
  struct SortField {
    std::size_t field = 0;
    bool descending = false;
  };

  void RequireOpen() const;
  [[nodiscard]] std::optional<ErrorInfo> WhyNeverChangeable() const;
  void RequireChangeable() const;
  /// Takes in the rows that came and went.
  void SyncOrder() const;
  [[nodiscard]] std::int64_t RowAt(std::int64_t position) const;
  [[nodiscard]] std::vector<SortField> ParseSort(std::string_view order) const;
  void ApplySort();
  [[nodiscard]] Value Fitting(const FieldInfo& field, Value value) const;
  void Announce(int options);
  void WritePending();
  void DeleteFromServer(std::int64_t row);
  [[nodiscard]] MemoryRow& FindOnServer(std::int64_t row) const;
  void RequireUnchanged(const MemoryRow& onServer) const;
  void RequireConstraints(const MemoryRow& row, const MemoryRow* changed) const;
  void GiveNumbers(MemoryRow& row) const;

  std::weak_ptr<FakeConnection> connection_;
  std::string source_;
  Request request_;
  LockType lock_ = LockType::ReadOnly;
  int state_ = objectState::closed;
  const void* operation_ = nullptr;
  std::shared_ptr<FakeStore> store_ = std::make_shared<FakeStore>();
  std::vector<SortField> sort_;
  mutable std::vector<std::int64_t> order_;  ///< Row numbers by position.
  mutable int version_ = 0;
  mutable std::int64_t position_ = 0;
  bool atNew_ = false;
  std::int64_t positionBeforeNew_ = 0;
};

}  // namespace tessel::test
