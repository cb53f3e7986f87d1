#pragma once

#include <QAbstractListModel>
#include <string>
#include <string_view>

#include "platform/TextLines.h"

namespace tessel {

/// Lines of text. They are turned into the toolkit's own texts only when they are drawn: there may
/// be hundreds of thousands.
class TextListModel final : public QAbstractListModel {
 public:
  [[nodiscard]] int Count() const { return static_cast<int>(lines_.Size()); }
  /// Empty for a line that is not there.
  [[nodiscard]] std::string Text(int line) const;
  void Add(std::string_view text);
  void Remove(int line);
  void SetAll(TextLines lines);

  /// As of every list, only without a look at the columns: a view asks for each line.
  [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override {
    return !parent.isValid() && Holds(row) ? createIndex(row, column) : QModelIndex();
  }
  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  [[nodiscard]] bool Holds(int line) const { return line >= 0 && line < Count(); }

  TextLines lines_;
};

}  // namespace tessel
