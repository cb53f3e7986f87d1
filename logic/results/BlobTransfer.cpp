#include "logic/results/BlobTransfer.h"

#include <algorithm>
#include <cstring>

#include "logic/program/FileDialogs.h"

namespace tessel {

namespace {

constexpr const char* companionEnding = "_FileName";

Bytes BytesOf(std::string_view content) {
  Bytes bytes(content.size());
  if (!content.empty()) std::memcpy(bytes.data(), content.data(), content.size());
  return bytes;
}

std::string_view ContentOf(const BinaryView& binary) {
  return {reinterpret_cast<const char*>(binary.bytes.data()), binary.bytes.size()};
}

}  // namespace

BlobTransfer::BlobTransfer(const Global& global, Window& window, RecordEditing& editing)
    : global_(global),
      help_(global),
      window_(window),
      editing_(editing),
      dataGrid_(window.Find<DataGrid>("DataGrid")),
      dialog_(window.FileDialogNamed("dlgBLOB")) {
  window.Menu("mnuBLOBSave").Click = [this] { TransferBLOB(false); };
  window.Menu("mnuBLOBLoad").Click = [this] { TransferBLOB(true); };
  window.Menu("mnuBLOBNull").Click = [this] { mnuBLOBNull_Click(); };
  dataGrid_.ButtonClick = [this](int) { PopupAtCell(); };
  blobDataFormat_.Format = [](const ValueView& value, std::string& shown) {
    BLOBDataFormat_Format(value, shown);
  };
}

void BlobTransfer::ShowRecordset(const Recordset& recordset) {
  const bool editable = !recordset.WhyNotChangeable();
  window_.Menu("mnuBLOBLoad").SetEnabled(editable);
  window_.Menu("mnuBLOBNull").SetEnabled(editable);
  for (std::size_t field = 0; field < recordset.Fields().size(); ++field) {
    if (!IsBinaryType(recordset.Fields()[field].type)) continue;
    const int column = static_cast<int>(field);
    dataGrid_.SetColumnFormat(column, &blobDataFormat_);
    dataGrid_.SetColumnLocked(column, true);
    dataGrid_.SetColumnButton(column, true);
  }
}

bool BlobTransfer::PopupAtCell() {
  const int column = dataGrid_.CurrentColumn();
  if (column < 0 || !dataGrid_.ColumnButton(column)) return false;
  const Rect cell = dataGrid_.CellBounds();
  window_.PopupMenu(window_.Menu("menuBLOB"), &dataGrid_, cell.left, cell.top + cell.height);
  return true;
}

/// A binary value shows as its size in bytes; null stays as it is.
void BlobTransfer::BLOBDataFormat_Format(const ValueView& value, std::string& shown) {
  if (const auto* binary = std::get_if<BinaryView>(&value))
    shown = "[" + std::to_string(binary->bytes.size()) + "]";
}

void BlobTransfer::mnuBLOBNull_Click() {
  help_.TryTo([this] {
    dataGrid_.SetCellText("");
    editing_.ShowEditButtonsUnlessNew();
  });
}

void BlobTransfer::TransferBLOB(bool load) {
  const std::shared_ptr<Recordset> rows = dataGrid_.DataSource();
  if (rows == nullptr || dataGrid_.CurrentColumn() < 0) return;
  dialog_.fileName = ProposedName();
  if (!AskForFile(load) || dataGrid_.DataSource() != rows) return;
  help_.TryTo([&] {
    if (load) Load(dialog_.fileName);
    else Save(dialog_.fileName);
  });
}

bool BlobTransfer::AskForFile(bool load) {
  const Files& files = global_.TheFiles();
  return load ? ShowOpenFileDialog(dialog_, files, false)
              : ShowSaveFileDialog(dialog_, files, false);
}

/// The text of the field that bears the binary field's name and an ending, where there is one.
std::string BlobTransfer::ProposedName() const {
  const Recordset& rows = *dataGrid_.DataSource();
  const auto column = static_cast<std::size_t>(dataGrid_.CurrentColumn());
  const auto companion = rows.FindField(rows.Fields().at(column).name + companionEnding);
  return companion ? ToText(CurrentValue(*companion)) : std::string();
}

/// Null on the row of a new record that is still empty.
ValueView BlobTransfer::CurrentValue(std::size_t field) const {
  const Recordset& rows = *dataGrid_.DataSource();
  const bool empty = dataGrid_.OnNewRow() && rows.Editing() != EditMode::Add;
  if (empty || rows.Bof() || rows.Eof()) return {};
  return rows.FieldValue(field);
}

void BlobTransfer::Load(const std::string& path) {
  if (!global_.TheFiles().FileExists(path))
    return help_.Show("The file does not exist.", MessageIcon::Exclamation);
  const std::string content = global_.TheFiles().ReadWhole(path);
  dataGrid_.SetCellValue(content.empty() ? Value() : Value(BytesOf(content)));
  editing_.ShowEditButtonsUnlessNew();
}

/// An existing file is replaced whole, so that it survives when the disk is full. Some databases
/// keep text in binary fields.
void BlobTransfer::Save(const std::string& path) {
  const ValueView value = CurrentValue(static_cast<std::size_t>(dataGrid_.CurrentColumn()));
  const auto* binary = std::get_if<BinaryView>(&value);
  Files& files = global_.TheFiles();
  if (binary != nullptr) files.ReplaceWhole(path, ContentOf(*binary), false);
  else files.ReplaceWhole(path, ToText(value), false);
}

}  // namespace tessel
