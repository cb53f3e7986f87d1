#include "platform/desktop/controls/TextListModel.h"

#include <utility>

#include "platform/desktop/base/Text.h"

namespace tessel {

std::string TextListModel::Text(int line) const {
  return Holds(line) ? lines_[static_cast<std::size_t>(line)] : std::string();
}

void TextListModel::Add(std::string text) {
  beginInsertRows({}, Count(), Count());
  lines_.push_back(std::move(text));
  endInsertRows();
}

void TextListModel::Remove(int line) {
  if (!Holds(line)) return;
  beginRemoveRows({}, line, line);
  lines_.erase(lines_.begin() + line);
  endRemoveRows();
}

void TextListModel::SetAll(std::vector<std::string> lines) {
  beginResetModel();
  lines_ = std::move(lines);
  endResetModel();
}

int TextListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Count();
}

QVariant TextListModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !Holds(index.row())) return {};
  return ToQt(lines_[static_cast<std::size_t>(index.row())]);
}

}  // namespace tessel
