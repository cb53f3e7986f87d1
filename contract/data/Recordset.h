#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Error.h"
#include "contract/base/Properties.h"
#include "contract/base/Value.h"

namespace tessel {

class Connection;
class Operation;
class RowWork;
struct CellSearch;
struct RowArrangement;

/// Bits of Connection::State and Recordset::State, joined by OR; 0 is closed. They have their
/// classic numbers.
namespace objectState {
inline constexpr int closed = 0;
inline constexpr int open = 1;
inline constexpr int connecting = 2;
inline constexpr int executing = 4;
inline constexpr int fetching = 8;
}  // namespace objectState

/// Whether rows can be changed. With ReadOnly and Unspecified they cannot; the other three do the
/// same here: nothing is locked in the database, and a change is refused when somebody else was
/// faster.
enum class LockType {
  Unspecified = -1,
  ReadOnly = 1,
  Pessimistic = 2,
  Optimistic = 3,
  BatchOptimistic = 4
};

/// What waits to be written, with the classic numbers. A deletion never waits.
enum class EditMode { None = 0, InProgress = 1, Add = 2, Delete = 4 };

/// A row's stable number within its recordset and all clones of it: kept by sorting, never reused.
/// 1 is the row that came first, and 0 names none.
using Bookmark = std::int64_t;

/// What is known of one field. Empty base names: an expression, or the provider cannot tell. While
/// rows arrive all but name and type may still be missing; it is filled in, in its place, when
/// the fetch ends.
struct FieldInfo {
  std::string name;  ///< As the result has it; several fields may have the same.
  DataType type = DataType::VarWChar;
  std::int64_t definedSize =
      0;  ///< Characters or bytes; 0 when unknown. Never a limit of what a value may hold.
  int precision = 0;  ///< Digits in all; 0 when unknown.
  int scale = 0;      ///< Digits behind the point.
  bool nullable = true;
  bool updatable = false;      ///< SetFieldValue takes it.
  bool autoIncrement = false;  ///< The database makes its value for a new row.
  bool searchable = true;      ///< Its values can be compared in a condition.
  bool isKey = false;          ///< Part of the unique key that the rows are found by.
  std::string baseCatalog;
  std::string baseSchema;
  std::string baseTable;
  std::string baseColumn;
  std::string typeName;  ///< The server's own name of the type, may be empty.
};

/// The rows of one command, behind a client-side static cursor. UI thread only.
///
/// Positions are 0-based places in the present order; Bookmark names a row for good. Operations
/// that need a current record raise Error(noCurrentRecord) without one; operations on a closed
/// recordset raise Error(objectClosed). A value looked at (ValueView) stays valid until the
/// recordset is closed or its row changes.
class Recordset {
 public:
  virtual ~Recordset() = default;

  // --- where they come from -------------------------------------------------------------------
  /// The text of the command; empty for a schema rowset.
  [[nodiscard]] virtual const std::string& Source() const = 0;
  /// The connection that the command ran on; null when that is gone. It may be closed.
  [[nodiscard]] virtual std::shared_ptr<Connection> ActiveConnection() const = 0;
  /// As it was opened or cloned.
  [[nodiscard]] virtual LockType Lock() const = 0;

  /// Asks what still fetches or writes for it to stop, drops rows and what was begun here and is
  /// pending. Closing a closed recordset does nothing. Clones keep the rows.
  virtual void Close() = 0;

  /// Bits of objectState; open|fetching while rows arrive, open|executing while a change is
  /// written.
  [[nodiscard]] virtual int State() const = 0;

  // --- its rows --------------------------------------------------------------------------------
  /// In the order of the result. The reference stays good until the recordset is closed.
  [[nodiscard]] virtual const std::vector<FieldInfo>& Fields() const = 0;
  /// Field number (0-based) of a name, without regard to case; the first of several; nothing if
  /// there is none.
  [[nodiscard]] virtual std::optional<std::size_t> FindField(std::string_view name) const = 0;
  /// Rows on show that have come so far, without a new one that is not written yet.
  [[nodiscard]] virtual std::int64_t RecordCount() const = 0;
  /// The same with those that an arrangement hides.
  [[nodiscard]] virtual std::int64_t FullCount() const = 0;

  /// Any cell by position; does not move the current record. A new record that is pending stands at
  /// RecordCount(). Beyond that noCurrentRecord is raised, and itemNotFound for a field that is not
  /// there. Shows what is pending in place of what was read.
  [[nodiscard]] virtual ValueView ValueAt(std::int64_t position, std::size_t field) const = 0;
  /// The row at a position, under the same rules.
  [[nodiscard]] virtual Bookmark BookmarkAt(std::int64_t position) const = 0;
  /// The cells at a position from field `first` on, as many as `values` has room for, under the
  /// same rules: the row is looked for once. Does not move the current record.
  virtual void ReadFieldsAt(std::int64_t position, std::size_t first,
                            std::span<ValueView> values) const = 0;
  /// Position of a row, or nothing when it was deleted, is hidden or never was.
  [[nodiscard]] virtual std::optional<std::int64_t> PositionOf(Bookmark bookmark) const = 0;

  // --- its current record ----------------------------------------------------------------------
  // At first it is the first row. A recordset without rows is at BOF and EOF at once, and MoveFirst
  // and MoveLast leave it there.
  [[nodiscard]] virtual bool Bof() const = 0;
  [[nodiscard]] virtual bool Eof() const = 0;
  virtual void MoveFirst() = 0;
  virtual void MoveLast() = 0;
  virtual void MoveNext() = 0;      ///< To EOF behind the last row; raises noCurrentRecord at EOF.
  virtual void MovePrevious() = 0;  ///< To BOF before the first row; raises noCurrentRecord at BOF.
  [[nodiscard]] virtual Bookmark CurrentBookmark() const = 0;
  virtual void
  MoveTo(Bookmark bookmark) = 0;  ///< Raises noCurrentRecord for a row that is not there.
  [[nodiscard]] virtual ValueView FieldValue(std::size_t field) const = 0;
  /// The values of as many of its fields as `values` has room for, from field `first` on: the
  /// record is looked for once, not for each of them. All of them must be there: itemNotFound.
  virtual void ReadFields(std::size_t first, std::span<ValueView> values) const = 0;
  /// Length of the current record's value in bytes: those of the text, the digits or the bytes, or
  /// of the number as ValueView holds it; 0 for null.
  [[nodiscard]] virtual std::int64_t ActualSize(std::size_t field) const = 0;

  /// A second cursor over the same rows with a position of its own, in the order of opening. Rows
  /// are shared, and so is a pending change; rows that arrive later show here too. Its state is
  /// `open` alone, and it lives on when this one is closed.
  [[nodiscard]] virtual std::shared_ptr<Recordset> Clone(LockType lock) = 0;

  /// Sorts by field names joined by ",", each optionally followed by " ASC" or " DESC"; names with
  /// blanks in "[" and "]". Nulls come first (last with DESC), numbers are compared by value, text
  /// by code point without regard to ASCII case, moments by their text; equal rows keep their order
  /// of arrival. Empty: the order of opening. Raises itemNotFound for an unknown field and leaves
  /// the order as it was. The current record stays current. Rows that arrive later stand behind the
  /// sorted ones until all are there; an added or changed row goes to its place at the next call.
  /// All rows are on show afterwards.
  virtual void SetSort(const std::string& order) = 0;

  // --- arranging and looking through them -------------------------------------------------------
  /// How its rows are arranged now.
  [[nodiscard]] virtual const RowArrangement& Arrangement() const = 0;
  /// Work whose last step arranges the rows anew, all at once; until then, and when it is let go of
  /// before, they stay as they are. The current record stays current where it is on show, else the
  /// first one on show becomes so. A row that is added or changed later is on show, at the end or
  /// where it stands. Rows that come or go meanwhile make the work begin anew. Raises
  /// itemNotFound for a field that is not there, Error(application) while rows still arrive, and
  /// Error(changePending), which the last step raises too, while a change is pending; it has ended
  /// then, and the rows stay as they are. A clone has an arrangement of its own, none at first.
  [[nodiscard]] virtual std::unique_ptr<RowWork> StartArrange(RowArrangement arrangement) = 0;
  /// Work that looks through the rows on show. When they are arranged anew, come or go it ends.
  [[nodiscard]] virtual std::unique_ptr<RowWork> StartSearch(CellSearch search) const = 0;

  // --- changing its rows -----------------------------------------------------------------------
  // One change is pending at a time: of the current record, or of a new one. It lies in memory and
  // is seen by this recordset and its clones at once; StartUpdate writes it to the database. Moving
  // away leaves it pending. All of them raise the error of WhyNotChangeable where there is one;
  // CancelUpdate needs no database, so it does not mind which one is in use.

  /// Why none of its rows can be changed now; nothing when they can. Error(readOnly) when the lock
  /// type is ReadOnly or Unspecified; Error(notSupported) when the rows cannot be written (no base
  /// table, several, or none of its fields) or while another database is in use on the connection
  /// than when they were read; another one while rows still arrive. On a closed connection nothing
  /// is said of the database: writing says that.
  [[nodiscard]] virtual std::optional<ErrorInfo> WhyNotChangeable() const = 0;

  /// What is pending: None, InProgress (an edited record), Add (a new one).
  [[nodiscard]] virtual EditMode Editing() const = 0;
  /// Begins a new record and makes it current. It stands at position RecordCount(), not counted
  /// until it is written, all fields null; fields never set take the database's defaults. Raises
  /// Error(changePending) while another change is pending.
  virtual void AddNew() = 0;
  /// Changes a field of the current record and begins an edit if none is pending. Text given to a
  /// field of another type is converted by ParseValue; what is no such value raises
  /// Error(typeMismatch) and changes nothing. Raises Error(readOnly) for a field that is not
  /// updatable, Error(changePending) when the pending change is of another record.
  virtual void SetFieldValue(std::size_t field, Value value) = 0;
  /// Writes the pending change; exactly one row of the base table changes, or none. A changed row
  /// is found by a whole unique key among the fields, else by all original values that can be
  /// compared, and must still hold the original values of the fields that were changed. Generated
  /// keys and defaults are read back. In the user's own open transaction it takes part without
  /// ending it. On failure the change stays pending. Nothing pending: the operation has ended.
  [[nodiscard]] virtual std::shared_ptr<Operation> StartUpdate() = 0;
  /// Drops the pending change; after AddNew the record that was current before is so again.
  virtual void CancelUpdate() = 0;
  /// Deletes the current record from the database, under the rules of StartUpdate, but that all of
  /// its original values that can be compared must still be there; drops a pending change of it.
  /// The record behind it becomes current.
  [[nodiscard]] virtual std::shared_ptr<Operation> StartDelete() = 0;

  /// "Unique Rows" (boolean): the fields hold a whole unique key of their one base table.
  [[nodiscard]] virtual const Properties& RecordsetProperties() const = 0;
};

}  // namespace tessel
