#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "contract/data/CombinedRows.h"
#include "contract/desktop/controls/DataGrid.h"
#include "logic/program/Global.h"
#include "logic/program/Help.h"
#include "logic/results/export/ShownOfAll.h"
#include "logic/results/export/formats/ExportChoices.h"

namespace tessel {

class dlgAsync;

/// The command of a window with a grid that writes its rows to a file: those selected, all, or
/// those of all connections.
class ExportCommand {
 public:
  /// `tell` shows a line about what was exported. `rowsOfAll` gives the rows of all connections; it
  /// may be empty. The others are the owner of the menu, and outlive this object.
  ExportCommand(const Global& global, Window& window, dlgAsync& async,
                std::function<void(const std::string&)> tell,
                std::function<std::vector<NamedRows>()> rowsOfAll);

  /// Asks what is to be exported, and does it. A failure is shown in its place. Does nothing while
  /// the grid shows no rows.
  void Run();

 private:
  /// Rows that can be exported.
  struct Offer {
    std::string text;
    std::shared_ptr<Recordset> rows;
    std::size_t firstColumn = 0;
    std::size_t columns = 0;
    std::vector<Bookmark> chosen = {};
    std::shared_ptr<const ShownOfAll> shownOfAll = nullptr;  ///< Where `rows` are merged ones.
  };

  void Export();
  [[nodiscard]] std::vector<Offer> Offers() const;
  void OfferSelection(std::vector<Offer>& offers, const std::shared_ptr<Recordset>& rows) const;
  void OfferAll(std::vector<Offer>& offers) const;
  [[nodiscard]] SqlDialect DatabaseOf(const Recordset& rows) const;
  void Write(const Offer& offer, const ExportChoices& choices, const std::string& path);

  const Global& global_;
  Window& window_;
  dlgAsync& async_;
  DataGrid& grid_;
  Help help_;
  std::function<void(const std::string&)> tell_;
  std::function<std::vector<NamedRows>()> rowsOfAll_;
};

}  // namespace tessel
