#pragma once

#include <QString>
#include <cstdint>
#include <functional>

#include "desktop/grid/cells/RecordsModel.h"

namespace tessel {

/// Cells to be copied: some rows, and a range of columns with both ends included.
struct CellsToCopy {
  std::int64_t rowCount = 0;
  std::function<std::int64_t(std::int64_t)>
      positionOf;  ///< Of the n-th row; negative: the row is gone.
  int firstColumn = 0;
  int lastColumn = -1;
  [[nodiscard]] bool IsOneCell() const { return rowCount == 1 && firstColumn == lastColumn; }
};

/// The cells as text, values separated by tabs, rows by line ends. A value that holds either, or
/// begins with a quotation mark, is quoted as spreadsheets do; a single cell is given as it stands.
/// Null is empty. Raises Error(application) when the text would grow beyond what a clipboard can
/// hold.
[[nodiscard]] std::string CopiedText(const RecordsModel& model, const CellsToCopy& cells);

/// The cells as an HTML table with the field names as its head; empty when they are too many for
/// that.
[[nodiscard]] QString CopiedHtml(const RecordsModel& model, const CellsToCopy& cells);

/// Puts both forms on the clipboard.
void CopyToClipboard(const RecordsModel& model, const CellsToCopy& cells);

}  // namespace tessel
