#include "logic/results/conversions/RecordConversion.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "contract/base/Error.h"
#include "contract/base/Keys.h"
#include "contract/desktop/controls/MenuItem.h"
#include "logic/program/Help.h"
#include "logic/program/dlgAsync.h"
#include "logic/results/stream/BatchLine.h"
#include "logic/text/dlgText.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr int viewWidth = 9600;
constexpr int viewHeight = 6300;
constexpr const char* cellsOnly = "mnuCvtCells";
constexpr std::string_view arrow = "--> ";  ///< Before the names of conversions in the menu.

/// Gives a text that grows batch by batch the room it will need, so that it is not moved again
/// and again and takes little more memory than it fills.
class TextRoom {
 public:
  TextRoom(std::string& text, std::int64_t records) : text_(text), records_(records) {}

  /// To be told after each batch; `done` counts records from 1.
  void Note(std::int64_t done) {
    if (text_.size() < nextLook_) return;
    const double perRecord = static_cast<double>(text_.size()) / static_cast<double>(done);
    const double expected = perRecord * static_cast<double>(records_);
    const double atLeast = static_cast<double>(text_.size());
    text_.reserve(static_cast<std::size_t>(std::max(expected, atLeast) * spare));
    nextLook_ = text_.capacity() - text_.capacity() / nearFull;
  }

 private:
  static constexpr std::size_t firstLook = 65536;
  static constexpr double spare = 1.125;       ///< Room that is never written to takes no memory.
  static constexpr std::size_t nearFull = 32;  ///< Looks again when less than 1/32 is left.

  std::string& text_;
  std::int64_t records_;
  std::size_t nextLook_ = firstLook;
};

/// Gathers the records in one text.
class TextInMemory final : public BatchSink {
 public:
  TextInMemory(std::string& text, const RecordFormat& format, std::int64_t records)
      : text_(text), format_(format), room_(text, records) {}

  void Take(const RecordBatch& batch) override {
    AppendRecords(text_, format_, batch);
    Note(batch);
  }
  [[nodiscard]] bool TakesText() const override { return true; }
  [[nodiscard]] std::string Formatted(const RecordBatch& batch) const override {
    std::string text;
    AppendRecords(text, format_, batch);
    return text;
  }
  void TakeText(const RecordBatch& batch, std::string_view text) override {
    text_ += text;
    Note(batch);
  }

 private:
  void Note(const RecordBatch& batch) {
    room_.Note(batch.first + static_cast<std::int64_t>(batch.Records()));
  }

  std::string& text_;
  const RecordFormat& format_;
  TextRoom room_;
};

std::string ProgressMessage(std::int64_t count, bool selected) {
  const std::string number = std::to_string(count);
  return selected ? "Converting " + number + " selected records..."
                  : "Converting all " + number + " records...";
}

}  // namespace

RecordConversion::RecordConversion(const Global& global, Window& window, dlgAsync& async,
                                   SqlTarget& sqlWindow)
    : global_(global),
      async_(async),
      sqlWindow_(sqlWindow),
      window_(window),
      grid_(window.Find<DataGrid>("DataGrid")) {
  for (const std::string& command : ConversionCommands())
    window.Menu(command).Click = [this, command] { Convert(command); };
  MenuItem& cells = window.Menu(cellsOnly);
  cells.Click = [&cells] { cells.SetChecked(!cells.Checked()); };
}

void RecordConversion::Convert(std::string_view command) {
  std::optional<std::string> text;
  try {
    text = ConvertedText(command);
  } catch (const Error& error) {
    Help(global_).Show(error.Description(), MessageIcon::Critical);
  } catch (const std::bad_alloc&) {
    Help(global_).Show("There is not enough memory for the text.", MessageIcon::Critical);
  }
  if (!text) return;
  const Conversion& conversion = ConversionOf(command, true);
  ViewText(global_, sqlWindow_, *std::move(text),
           {conversion.helpContext, std::string(conversion.filter), viewWidth, viewHeight, false,
            false, TitleOf(command)});
}

/// "CSV of Sakila, 347 records".
std::string RecordConversion::TitleOf(std::string_view command) const {
  std::string name = window_.Menu(command).Caption();
  std::erase(name, '&');
  name.erase(0, name.starts_with(arrow) ? arrow.size() : 0);
  return name + " of " + window_.Caption() + ", " + std::to_string(converted_) +
         (converted_ == 1 ? " record" : " records");
}

std::optional<std::string> RecordConversion::ConvertedText(std::string_view command) {
  ColumnRange columns = GetColumnRange();
  const Conversion& conversion = ConversionOf(command, columns.Several());
  std::string tableName;
  if (conversion.insertsIntoTable) {
    tableName = GetTableName(true, conversion.helpContext);
    if (tableName.empty()) return std::nullopt;
  }
  if (conversion.firstColumnOnly) columns.last = columns.first;
  const ConversionFrame frame =
      FrameOf(conversion, grid_.DataSource()->Fields(), columns, tableName, quoting_);
  std::string text = frame.opening;
  ConvertRecords(text, frame.format, columns);
  text += frame.closing;
  return text;
}

/// The records are read here and written by a line of work. Cancelling keeps what is done.
void RecordConversion::ConvertRecords(std::string& text, const RecordFormat& format,
                                      ColumnRange columns) {
  std::vector<Bookmark> selected = SelectedRows();
  const bool all = selected.empty();
  BatchReader reader(grid_.DataSource(), static_cast<std::size_t>(columns.first),
                     static_cast<std::size_t>(std::max(columns.last - columns.first + 1, 0)),
                     std::move(selected));
  TextInMemory sink(text, format, reader.Count());
  const std::unique_ptr<WorkLine> work = global_.MakeWorkLine();
  BatchLine line(*work, sink, [this] { return async_.Yield(); });
  std::shared_ptr<RecordBatch> batch = reader.NewBatch();
  converted_ = 0;
  const auto convert = [&](std::int64_t i) {
    reader.ReadInto(*batch);
    converted_ = i + 1;
    if (!IsFull(*batch)) return;
    line.Give(batch);
    batch = reader.NewBatch();
  };
  const std::shared_ptr<Connection> connection = reader.Rows().ActiveConnection();
  async_.ForEach(ProgressMessage(reader.Count(), !all), connection.get(), reader.Count(), convert,
                 1, "records");
  line.Give(batch);
  line.Finish();
}

/// The rectangle of cells that is to be taken alone; empty when all is.
GridCells RecordConversion::ChosenCells() const {
  return window_.Menu(cellsOnly).Checked() ? grid_.SelCells() : GridCells();
}

std::vector<Bookmark> RecordConversion::SelectedRows() const {
  const GridCells cells = ChosenCells();
  if (cells.IsEmpty()) return grid_.SelBookmarks();
  std::vector<Bookmark> rows;
  for (std::int64_t row = cells.firstRow; row <= cells.lastRow; ++row)
    rows.push_back(grid_.DataSource()->BookmarkAt(row));
  return rows;
}

ColumnRange RecordConversion::GetColumnRange() const {
  const GridCells cells = ChosenCells();
  if (!cells.IsEmpty()) return {cells.firstColumn, cells.lastColumn};
  const int first = grid_.SelStartCol();
  const int last = grid_.SelEndCol();
  return {first < 0 ? 0 : first, last < 0 ? grid_.ColumnCount() - 1 : last};
}

/// Shift asks for the name in any case.
std::string RecordConversion::GetTableName(bool ask, int helpContext) const {
  std::string name;
  if (!global_.TheDesktop().IsKeyDown(key::shift)) name = TableNameIn(grid_.DataSource()->Source());
  if (name.empty() && ask && !GetText(global_, helpContext, "Table name:-", name)) return {};
  return name;
}

}  // namespace tessel
