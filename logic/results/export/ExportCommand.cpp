#include "logic/results/export/ExportCommand.h"

#include <algorithm>
#include <new>
#include <utility>

#include "contract/base/Error.h"
#include "contract/data/Connection.h"
#include "contract/data/DbmsName.h"
#include "logic/results/conversions/RecordFormat.h"
#include "logic/results/export/FileExport.h"
#include "logic/results/export/dlgExport.h"

namespace tessel {

namespace {

std::string Counted(std::int64_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// A file's name of what is in a table's: without quotes, and without what divides folders.
std::string FileNameOf(std::string name) {
  std::erase_if(name,
                [](char c) { return std::string_view("\"`[]").find(c) != std::string_view::npos; });
  std::ranges::replace(name, '/', '_');
  return name;
}

}  // namespace

ExportCommand::ExportCommand(const Global& global, Window& window, dlgAsync& async,
                             std::function<void(const std::string&)> tell,
                             std::function<std::vector<NamedRows>()> rowsOfAll)
    : global_(global),
      window_(window),
      async_(async),
      grid_(window.Find<DataGrid>("DataGrid")),
      help_(global),
      tell_(std::move(tell)),
      rowsOfAll_(std::move(rowsOfAll)) {
  window.Menu("mnuRowsExport").Click = [this] { Run(); };
}

void ExportCommand::Run() {
  if (!grid_.Visible() || grid_.DataSource() == nullptr) return;
  try {
    Export();
  } catch (const Error& error) {
    help_.Show(error.Description(), MessageIcon::Critical);
  } catch (const std::bad_alloc&) {
    help_.Show("There is not enough memory for the export.", MessageIcon::Critical);
  }
}

void ExportCommand::Export() {
  const std::vector<Offer> offers = Offers();
  std::vector<std::string> texts;
  for (const Offer& offer : offers) texts.push_back(offer.text);
  const Recordset& shown = *grid_.DataSource();
  const auto request = dlgExport(global_).Go(
      window_, texts, FileNameOf(TableNameIn(shown.Source())), DatabaseOf(shown));
  if (request) Write(offers[request->what], request->choices, request->path);
}

SqlDialect ExportCommand::DatabaseOf(const Recordset& rows) const {
  const std::shared_ptr<Connection> connection = rows.ActiveConnection();
  return connection == nullptr ? SqlDialect::Standard : DialectOf(DbmsName(*connection));
}

// --- what there is to export ---------------------------------------------------------------------

std::vector<ExportCommand::Offer> ExportCommand::Offers() const {
  const std::shared_ptr<Recordset> rows = grid_.DataSource();
  std::vector<Offer> offers;
  OfferSelection(offers, rows);
  offers.push_back(
      {"All rows: " + Counted(rows->RecordCount(), "record"), rows, 0, rows->Fields().size()});
  OfferAll(offers);
  return offers;
}

void ExportCommand::OfferSelection(std::vector<Offer>& offers,
                                   const std::shared_ptr<Recordset>& rows) const {
  std::vector<Bookmark> chosen = grid_.SelBookmarks();
  const int first = std::max(grid_.SelStartCol(), 0);
  const int last = grid_.SelEndCol() < 0 ? grid_.ColumnCount() - 1 : grid_.SelEndCol();
  const auto columns = static_cast<std::size_t>(last - first + 1);
  if (chosen.empty() && columns == rows->Fields().size()) return;
  const auto count =
      chosen.empty() ? rows->RecordCount() : static_cast<std::int64_t>(chosen.size());
  offers.push_back({"Selection: " + Counted(count, "record") + ", " +
                        Counted(static_cast<std::int64_t>(columns), "column"),
                    rows, static_cast<std::size_t>(first), columns, std::move(chosen)});
}

/// One file holds the rows of all, with a column that names the connection; of each those on show,
/// in their order.
void ExportCommand::OfferAll(std::vector<Offer>& offers) const {
  const std::vector<NamedRows> parts = rowsOfAll_ ? rowsOfAll_() : std::vector<NamedRows>();
  if (parts.size() < 2) return;
  const std::shared_ptr<Recordset> merged = global_.Data().MergeRows(parts);
  const auto shown = std::make_shared<const ShownOfAll>(parts);
  offers.push_back({.text = "All connections: " + Counted(shown->Count(), "record") + " of " +
                            std::to_string(parts.size()),
                    .rows = merged,
                    .columns = merged->Fields().size(),
                    .shownOfAll = shown});
}

// --- exporting -----------------------------------------------------------------------------------

void ExportCommand::Write(const Offer& offer, const ExportChoices& choices,
                          const std::string& path) {
  const auto& fields = offer.rows->Fields();
  const auto first = fields.begin() + static_cast<std::ptrdiff_t>(offer.firstColumn);
  BatchReader reader(offer.rows, offer.firstColumn, offer.columns, offer.chosen);
  if (const auto& shown = offer.shownOfAll)
    reader.TakeBy(shown->Count(), [shown](std::int64_t row) { return shown->Merged(row); });
  const auto report =
      ExportToFile(global_, async_, reader,
                   {first, first + static_cast<std::ptrdiff_t>(offer.columns)}, choices, path);
  if (!report) return tell_("Export cancelled.");
  tell_(Counted(report->records, "record") + " exported to " + path + ".");
  if (!report->remarks.empty()) help_.Show(report->remarks, MessageIcon::Information);
}

}  // namespace tessel
