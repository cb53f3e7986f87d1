#pragma once

#include <QLineEdit>

namespace tessel {

class GridView;

/// The line in which the current cell of a grid is edited. It lies over the cell as a child of the
/// grid, keeps line ends and tabs of the text as they are, and hands the keys that leave the cell
/// to the grid.
class CellEditor final : public QLineEdit {
  Q_OBJECT

 public:
  /// How the cell takes what is typed.
  struct Cell {
    bool isNull = false;
    bool emptyIsNull = false;  ///< An empty text means null.
    bool isNumber = false;
  };

  explicit CellEditor(GridView& grid);

  void Open(const QString& text, const Cell& cell);
  void Close();
  [[nodiscard]] bool IsOpen() const { return open_; }
  /// Whether the user has changed the text since it was opened.
  [[nodiscard]] bool Changed() const { return changed_; }
  /// Replaces the text as if it were typed.
  void Type(const QString& text);
  void PlaceOver(const QRect& cell);

 signals:
  void typed();
  void closed();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool focusNextPrevChild(bool next) override;

 private:
  void NoteTyped();

  GridView& grid_;
  bool open_ = false;
  bool changed_ = false;
  bool emptyIsNull_ = false;
};

}  // namespace tessel
