#include "desktop/controls/lists/TextListModel.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "desktop/base/Text.h"

namespace tessel {

std::string TextListModel::Line(int line) const {
  return Holds(line) ? std::string(lines_[static_cast<std::size_t>(line)]) : std::string();
}

std::string TextListModel::Text(int line) const {
  return shown_ && Holds(line) ? shown_(lines_[static_cast<std::size_t>(line)]) : Line(line);
}

std::vector<int> TextListModel::LongestLines(std::size_t most) const {
  std::vector<int> lines(lines_.Size());
  std::iota(lines.begin(), lines.end(), 0);
  if (lines.size() <= most) return lines;
  const auto length = [this](int line) { return lines_[static_cast<std::size_t>(line)].size(); };
  const auto end = lines.begin() + static_cast<std::ptrdiff_t>(most);
  std::ranges::nth_element(lines, end, std::ranges::greater(), length);
  lines.erase(end, lines.end());
  return lines;
}

void TextListModel::Add(std::string_view text) {
  beginInsertRows({}, Count(), Count());
  lines_.Add(text);
  endInsertRows();
}

void TextListModel::SetAll(TextLines lines, ListBox::ShownText shown) {
  beginResetModel();
  lines_ = std::move(lines);
  shown_ = std::move(shown);
  endResetModel();
}

int TextListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : Count();
}

QVariant TextListModel::data(const QModelIndex& index, int role) const {
  if (role != Qt::DisplayRole || !Holds(index.row())) return {};
  return ToQt(Text(index.row()));
}

}  // namespace tessel
