#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "logic/program/Global.h"
#include "logic/program/Help.h"
#include "logic/results/RecordsHost.h"
#include "logic/together/RunSummary.h"

namespace tessel {

struct CompareChoice;
class dlgAsync;
class frmRecords;
class frmRows;

/// What is done with all connections together: one SQL run on them at once, the summary of the last
/// run, their rows merged, their rows compared.
class AllConnections {
 public:
  using Windows = std::vector<frmRecords*>;

  /// `windows` gives the records windows that are open, in the order in which they were opened.
  /// All of them outlive this object.
  AllConnections(const Global& global, dlgAsync& async, Window& frame, RecordsHost& host,
                 std::function<Windows()> windows);
  ~AllConnections();

  /// Those that take part in what is run.
  [[nodiscard]] Windows TakingPart() const;
  /// Runs SQL on all that take part at once. False: nothing ran.
  bool RunAtOnce(const std::string& taggedSQL, bool preview);
  /// SQL was run on the first `ran` of `windows`, one after another; that is the last run now.
  void NoteRun(const std::string& taggedSQL, const Windows& windows, std::size_t ran);

  /// Shows what the last run on two or more connections came to.
  void ShowSummary();

  /// Lists what came of the statements of the last run in one window, which has several.
  void ShowStatements(frmRecords& of);
  /// Closes that list, if it is that window's.
  void ForgetStatements(const frmRecords& of);

  /// Shows the rows of all that take part in one grid.
  void ShowMergedRows();
  /// Asks which of them are to be compared, and shows in what they differ.
  void ShowDifferences();

  /// The rows that the records windows show, in their order.
  [[nodiscard]] std::vector<NamedRows> RowsOnShow() const;
  /// The windows of rows of several connections that are open.
  [[nodiscard]] std::vector<Window*> RowsWindows() const;
  /// The grid whose rows field tags take their values from, as the user chose; null: none is.
  [[nodiscard]] DataGrid* RowsForTags() const;

 private:
  [[nodiscard]] frmRecords* WindowOf(const RunLine& line) const;
  void RunAgainWhereItFailed();
  void GoTo(Bookmark line);
  void ShowDifferencesOf(const NamedRows& a, const NamedRows& b, const CompareChoice& choice);
  [[nodiscard]] bool Compare(RowComparison& comparison);
  void TakeTagsFrom(const frmRows& chosen);
  frmRows& AddRowsWindow();
  void Forget(frmRows* closed);

  const Global& global_;
  dlgAsync& async_;
  Window& frame_;
  RecordsHost& host_;
  std::function<Windows()> windows_;
  Help help_;
  std::string taggedSQL_;       ///< Of the last run.
  std::vector<RunLine> lines_;  ///< Of the last run.
  std::vector<std::unique_ptr<frmRows>> rowsWindows_;
  frmRows* summary_ = nullptr;                                   ///< Among them, while it is open.
  frmRows* statements_ = nullptr;                                ///< The same.
  const frmRecords* statementsOf_ = nullptr;                     ///< Whose they are.
  frmRows* merged_ = nullptr;                                    ///< The same.
  std::shared_ptr<const void> alive_ = std::make_shared<int>();  ///< Deferred work checks it.
};

}  // namespace tessel
