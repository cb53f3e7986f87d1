#pragma once

#include <QAbstractListModel>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/controls/ListControls.h"
#include "contract/text/TextLines.h"

namespace tessel {

/// Lines of text. What is shown of them is made only when it is drawn: there may be hundreds of
/// thousands.
class TextListModel final : public QAbstractListModel {
 public:
  [[nodiscard]] int Count() const { return static_cast<int>(lines_.Size()); }
  /// Empty for a line that is not there.
  [[nodiscard]] std::string Line(int line) const;
  [[nodiscard]] std::string Text(int line) const;  ///< What is shown of it.
  /// The `most` longest lines, counted in bytes, in any order; all when there are no more.
  [[nodiscard]] std::vector<int> LongestLines(std::size_t most) const;
  void Add(std::string_view text);
  /// Without `shown` the lines are shown as they are.
  void SetAll(TextLines lines, ListBox::ShownText shown);

  /// As of every list, only without a look at the columns: a view asks for each line.
  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override {
    return !parent.isValid() && Holds(row) ? createIndex(row, column) : QModelIndex();
  }
  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  [[nodiscard]] bool Holds(int line) const { return line >= 0 && line < Count(); }

  TextLines lines_;
  ListBox::ShownText shown_;
};

}  // namespace tessel
