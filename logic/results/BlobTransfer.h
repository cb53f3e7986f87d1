#pragma once

#include <memory>
#include <string>
#include <vector>

#include "contract/desktop/CommonDialogs.h"
#include "contract/desktop/controls/DataGrid.h"
#include "logic/program/Help.h"
#include "logic/results/RecordEditing.h"

namespace tessel {

/// Binary fields of the rows on show in a records window: their columns show sizes and carry a
/// button, whose menu saves the value of the current cell to a file, loads it from one, or makes it
/// null. Loading and null change the record in memory; it is written as any other change.
class BlobTransfer {
 public:
  /// All outlive it.
  BlobTransfer(const Global& global, Window& window, RecordEditing& editing);

  /// Sets up the columns of the rows that the grid has been bound to.
  void ShowRecordset(const Recordset& recordset);
  /// Pops up the menu at the current cell; false when its column has no button.
  bool PopupAtCell();

 private:
  static void BLOBDataFormat_Format(const ValueView& value, std::string& shown);
  void mnuBLOBNull_Click();
  void TransferBLOB(bool load);
  void Load(const std::string& path);
  void Save(const std::string& path);
  [[nodiscard]] bool AskForFile(bool load);
  [[nodiscard]] std::string ProposedName() const;
  [[nodiscard]] ValueView CurrentValue(std::size_t field) const;

  const Global& global_;
  Help help_;
  Window& window_;
  RecordEditing& editing_;
  DataGrid& dataGrid_;
  FileDialog& dialog_;
  DataFormat blobDataFormat_;
};

}  // namespace tessel
