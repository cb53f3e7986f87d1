#pragma once

#include <QAbstractTableModel>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/desktop/controls/DataGrid.h"

namespace tessel {

/// What a cell shows.
struct ShownCell {
  QString text;
  bool isNull = false;
  bool isNumber = false;
};

/// The rows of a recordset as Qt's views want them. Values are read when asked for; no row is
/// copied.
class RecordsModel final : public QAbstractTableModel {
 public:
  struct Column {
    DataFormat* format = nullptr;
    bool locked = false;
    bool button = false;
  };

  using QAbstractTableModel::QAbstractTableModel;

  [[nodiscard]] const std::shared_ptr<Recordset>& Source() const { return source_; }
  void SetSource(std::shared_ptr<Recordset> source);
  /// Rows shown: the records, one that is begun, and an empty one behind them where records may be
  /// added.
  [[nodiscard]] int RowCount() const { return rows_; }
  /// Records that there were when last looked.
  [[nodiscard]] int Records() const { return records_; }
  [[nodiscard]] bool IsNewRow(int row) const { return row >= records_; }
  /// Whether the row shows nothing, being that of a record not begun.
  [[nodiscard]] bool IsEmptyRow(int row) const { return row >= records_ + (adding_ ? 1 : 0); }
  [[nodiscard]] bool Adding() const { return adding_; }
  void SetAllowsNew(bool allows);
  /// Looks how many records there are.
  void Refresh();
  [[nodiscard]] int ColumnCount() const { return static_cast<int>(columns_.size()); }
  /// Raises std::out_of_range for a column that is not there.
  [[nodiscard]] Column& ColumnAt(int column) {
    return columns_.at(static_cast<std::size_t>(column));
  }
  [[nodiscard]] const Column& ColumnAt(int column) const {
    return columns_.at(static_cast<std::size_t>(column));
  }

  void SetMarkedCells(MarkedCells marked) { marked_ = std::move(marked); }
  /// Never raises: a row that has gone is not marked.
  [[nodiscard]] bool IsMarked(int row, int column) const;

  /// Never raises: a value that cannot be read shows as nothing.
  [[nodiscard]] ShownCell CellAt(int row, int column) const;
  /// The whole text of a cell, as the column's format gives it or in its ordinary form; empty for
  /// null.
  [[nodiscard]] std::string FullText(std::int64_t row, int column) const;
  [[nodiscard]] std::string FieldName(int column) const;  ///< Empty for a field that is not there.
  /// What the tool tip of a column's head says: name, type, whether it is a key.
  [[nodiscard]] std::string FieldTip(int column) const;
  /// Whether numbers are shown in it.
  [[nodiscard]] bool IsNumberColumn(int column) const;
  /// The row's bookmark; nothing when the recordset cannot tell it any more.
  [[nodiscard]] std::optional<Bookmark> BookmarkAt(int row) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  void Look();
  [[nodiscard]] int RowsWanted() const {
    return records_ + (adding_ ? 1 : 0) + (allowsNew_ ? 1 : 0);
  }
  [[nodiscard]] ShownCell ReadCell(int row, int column) const;
  [[nodiscard]] std::string Formatted(const ValueView& value, int column) const;

  std::shared_ptr<Recordset> source_;
  int rows_ = 0;
  int records_ = 0;
  bool adding_ = false;
  bool allowsNew_ = false;
  std::vector<Column> columns_;
  MarkedCells marked_;
};

}  // namespace tessel
