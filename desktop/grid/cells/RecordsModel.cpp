#include "desktop/grid/cells/RecordsModel.h"

#include <algorithm>
#include <limits>

#include "desktop/base/Text.h"
#include "desktop/grid/cells/FieldText.h"
#include "desktop/grid/cells/ShownText.h"

namespace tessel {

namespace {

std::int64_t RowsThatFit(const Recordset& recordset) {
  return std::min<std::int64_t>(recordset.RecordCount(), std::numeric_limits<int>::max() - 3);
}

}  // namespace

void RecordsModel::SetSource(std::shared_ptr<Recordset> source) {
  beginResetModel();
  source_ = std::move(source);
  Look();
  rows_ = source_ == nullptr ? 0 : RowsWanted();
  marked_ = nullptr;
  columns_.assign(source_ == nullptr ? 0 : source_->Fields().size(), {});
  endResetModel();
}

void RecordsModel::SetAllowsNew(bool allows) {
  allowsNew_ = allows;
  Refresh();
}

/// Rows come and go at the end as far as a view is concerned: it reads every cell anew in any case.
void RecordsModel::Refresh() {
  if (source_ == nullptr || (source_->State() & objectState::open) == 0) return;
  Look();
  const int wanted = RowsWanted();
  if (wanted > rows_) {
    beginInsertRows({}, rows_, wanted - 1);
    rows_ = wanted;
    endInsertRows();
  } else if (wanted < rows_) {
    beginRemoveRows({}, wanted, rows_ - 1);
    rows_ = wanted;
    endRemoveRows();
  }
}

void RecordsModel::Look() {
  records_ = source_ == nullptr ? 0 : static_cast<int>(RowsThatFit(*source_));
  adding_ = source_ != nullptr && source_->Editing() == EditMode::Add;
}

ShownCell RecordsModel::CellAt(int row, int column) const {
  if (IsEmptyRow(row)) return {};
  try {
    return ReadCell(row, column);
  } catch (const std::exception&) {
    return {};
  }
}

std::string RecordsModel::FullText(std::int64_t row, int column) const {
  const ValueView value = source_->ValueAt(row, static_cast<std::size_t>(column));
  std::string text = Formatted(value, column);
  return text.empty() ? ToText(value) : text;
}

std::string RecordsModel::FieldName(int column) const {
  const auto field = static_cast<std::size_t>(column);
  return field < source_->Fields().size() ? source_->Fields()[field].name : std::string();
}

/// The field's name, and below it what is known of the column.
std::string RecordsModel::FieldTip(int column) const {
  const auto field = static_cast<std::size_t>(column);
  if (field >= source_->Fields().size()) return {};
  const FieldInfo& info = source_->Fields()[field];
  return info.name + "\n" + DescriptionOf(info);
}

bool RecordsModel::IsNumberColumn(int column) const {
  const auto field = static_cast<std::size_t>(column);
  return field < source_->Fields().size() && IsNumericType(source_->Fields()[field].type) &&
         ColumnAt(column).format == nullptr;
}

std::optional<Bookmark> RecordsModel::BookmarkAt(int row) const {
  if (IsNewRow(row)) return std::nullopt;
  try {
    return source_->BookmarkAt(row);
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

bool RecordsModel::IsMarked(int row, int column) const {
  if (!marked_) return false;
  const std::optional<Bookmark> bookmark = BookmarkAt(row);
  return bookmark && marked_(*bookmark, column);
}

int RecordsModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int RecordsModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount();
}

QVariant RecordsModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || source_ == nullptr) return {};
  if (role == Qt::DisplayRole) return CellAt(index.row(), index.column()).text;
  if (role == Qt::TextAlignmentRole && CellAt(index.row(), index.column()).isNumber)
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  return {};
}

QVariant RecordsModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (source_ == nullptr) return {};
  if (orientation == Qt::Vertical) {
    if (role != Qt::DisplayRole) return {};
    return IsNewRow(section) ? QVariant(QStringLiteral("*")) : QVariant(section + 1);
  }
  if (role == Qt::DisplayRole) return AsShown(std::string_view(FieldName(section)));
  if (role == Qt::ToolTipRole) return AsPlainToolTip(FieldTip(section));
  if (role == Qt::TextAlignmentRole && IsNumberColumn(section))
    return static_cast<int>(Qt::AlignRight | Qt::AlignVCenter);
  return {};
}

ShownCell RecordsModel::ReadCell(int row, int column) const {
  const ValueView value = source_->ValueAt(row, static_cast<std::size_t>(column));
  const DataType type = source_->Fields()[static_cast<std::size_t>(column)].type;
  const std::string formatted = Formatted(value, column);
  if (!formatted.empty()) return {AsShown(std::string_view(formatted)), false, false};
  return {AsShown(value), IsNull(value), IsNumericType(type)};
}

/// A format that fails leaves the value in its ordinary form: painting is no place for a message.
std::string RecordsModel::Formatted(const ValueView& value, int column) const {
  std::string text;
  const DataFormat* format = ColumnAt(column).format;
  if (format == nullptr) return text;
  try {
    format->Format.Raise(nullptr, value, text);
  } catch (const std::exception&) {
    text.clear();
  }
  return text;
}

}  // namespace tessel
