#pragma once

#include <QAbstractListModel>
#include <string>
#include <vector>

namespace tessel {

/// Lines of text. They are turned into the toolkit's own texts only when they are drawn: there may
/// be hundreds of thousands.
class TextListModel final : public QAbstractListModel {
 public:
  [[nodiscard]] int Count() const { return static_cast<int>(lines_.size()); }
  /// Empty for a line that is not there.
  [[nodiscard]] std::string Text(int line) const;
  void Add(std::string text);
  void Remove(int line);
  void SetAll(std::vector<std::string> lines);

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  [[nodiscard]] bool Holds(int line) const { return line >= 0 && line < Count(); }

  std::vector<std::string> lines_;
};

}  // namespace tessel
