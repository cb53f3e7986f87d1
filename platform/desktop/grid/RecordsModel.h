#pragma once

#include <QAbstractTableModel>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/DataGrid.h"

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
  [[nodiscard]] int RowCount() const { return rows_; }
  [[nodiscard]] int ColumnCount() const { return static_cast<int>(columns_.size()); }
  /// Raises std::out_of_range for a column that is not there.
  [[nodiscard]] Column& ColumnAt(int column) {
    return columns_.at(static_cast<std::size_t>(column));
  }
  [[nodiscard]] const Column& ColumnAt(int column) const {
    return columns_.at(static_cast<std::size_t>(column));
  }

  /// Never raises: a value that cannot be read shows as nothing.
  [[nodiscard]] ShownCell CellAt(int row, int column) const;
  /// The whole text of a cell, as the column's format gives it or in its ordinary form; empty for
  /// null.
  [[nodiscard]] std::string FullText(std::int64_t row, int column) const;
  [[nodiscard]] std::string FieldName(int column) const;  ///< Empty for a field that is not there.
  /// The row's bookmark; nothing when the recordset cannot tell it any more.
  [[nodiscard]] std::optional<Bookmark> BookmarkAt(int row) const;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  [[nodiscard]] ShownCell ReadCell(int row, int column) const;
  [[nodiscard]] std::string Formatted(const ValueView& value, int column) const;

  std::shared_ptr<Recordset> source_;
  int rows_ = 0;
  std::vector<Column> columns_;
};

}  // namespace tessel
