#include "logic/together/dlgCompare.h"

#include <utility>

namespace tessel {

namespace {

constexpr const char* eachOfTheOthers = "(each of the others)";

}  // namespace

dlgCompare::dlgCompare(const Global& global)
    : window_(global.TheDesktop().MakeWindow("dlgCompare")),
      cboA_(window_->Find<ComboBox>("cboA")),
      cboB_(window_->Find<ComboBox>("cboB")),
      trvKeys_(window_->Find<TreeView>("trvKeys")),
      chkBooleans_(window_->Find<CheckBox>("chkBooleans")) {
  cboA_.Click = [this] {
    ListOthers();
    ListKeys();
  };
  window_->Find<Button>("cmdOK").Click = [this] {
    confirmed_ = true;
    window_->Hide();
  };
  window_->Find<Button>("cmdCancel").Click = [this] { window_->Hide(); };
}

std::optional<CompareChoice> dlgCompare::Go(Window& owner, std::vector<NamedRows> results) {
  results_ = std::move(results);
  for (const NamedRows& result : results_) cboA_.AddItem(result.name);
  cboA_.SetListIndex(0);
  window_->ShowModal(&owner);
  std::optional<CompareChoice> choice;
  if (confirmed_) choice = Choice();
  window_->Unload();
  return choice;
}

/// The results that the chosen one can be compared with.
std::vector<std::size_t> dlgCompare::Others() const {
  std::vector<std::size_t> others;
  for (std::size_t i = 0; i < results_.size(); ++i)
    if (static_cast<int>(i) != cboA_.ListIndex()) others.push_back(i);
  return others;
}

void dlgCompare::ListOthers() {
  cboB_.Clear();
  for (const std::size_t other : Others()) cboB_.AddItem(results_[other].name);
  if (results_.size() > 2) cboB_.AddItem(eachOfTheOthers);
  cboB_.SetListIndex(0);
}

/// A key of the tree is the column's number: several columns may have one name.
void dlgCompare::ListKeys() {
  for (const std::string& key : trvKeys_.Children("")) trvKeys_.Remove(key);
  const auto& fields = results_[static_cast<std::size_t>(cboA_.ListIndex())].rows->Fields();
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const std::string key = std::to_string(i);
    trvKeys_.Add("", {key, fields[i].name});
    if (fields[i].isKey) trvKeys_.SetChecked(key, true);
  }
}

CompareChoice dlgCompare::Choice() const {
  CompareChoice choice;
  choice.a = static_cast<std::size_t>(cboA_.ListIndex());
  const std::vector<std::size_t> others = Others();
  if (const auto b = static_cast<std::size_t>(cboB_.ListIndex()); b < others.size())
    choice.b = others[b];
  for (const std::string& key : trvKeys_.Children(""))
    if (trvKeys_.Checked(key)) choice.keys.push_back(trvKeys_.Text(key));
  choice.booleansAreNumbers = chkBooleans_.Value();
  return choice;
}

}  // namespace tessel
