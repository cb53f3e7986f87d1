#include "logic/results/runs/ResultChoice.h"

#include <algorithm>
#include <utility>

#include "contract/data/Recordset.h"

namespace tessel {

ResultChoice::ResultChoice(Window& window, std::function<bool(const Rows&)> show)
    : cboResult_(window.Find<ComboBox>("cboResult")), show_(std::move(show)) {
  cboResult_.Click = [this] { cboResult_Click(); };
}

void ResultChoice::Offer(const std::vector<CommandResult>& results) {
  rows_.clear();
  shown_ = 0;
  for (const CommandResult& result : results)
    if (result.rows != nullptr) rows_.push_back(result.rows);
  choosing_ = true;
  cboResult_.Clear();
  if (rows_.size() > 1) {
    for (std::size_t i = 0; i < rows_.size(); ++i)
      cboResult_.AddItem("Result " + std::to_string(i + 1) + " of " + std::to_string(rows_.size()) +
                         ": " + std::to_string(rows_[i]->RecordCount()) + " record(s)");
    cboResult_.SetListIndex(0);
  }
  choosing_ = false;
  cboResult_.SetVisible(rows_.size() > 1);
}

bool ResultChoice::Step(int results) {
  const int wanted = shown_ + results;
  if (wanted < 0 || wanted >= std::ssize(rows_)) return false;
  cboResult_.SetListIndex(wanted);
  return true;
}

bool ResultChoice::Choose(const Rows& rows) {
  const auto found = std::ranges::find(rows_, rows);
  if (found == rows_.end()) return false;
  const int wanted = static_cast<int>(found - rows_.begin());
  if (rows_.size() > 1) cboResult_.SetListIndex(wanted);
  return shown_ == wanted;
}

/// Where the rows on show stay, the list says so again.
void ResultChoice::cboResult_Click() {
  const int wanted = cboResult_.ListIndex();
  if (choosing_ || wanted == shown_) return;
  choosing_ = true;
  const int before = std::exchange(shown_, wanted);
  if (!show_(rows_.at(static_cast<std::size_t>(wanted)))) {
    shown_ = before;
    cboResult_.SetListIndex(before);
  }
  choosing_ = false;
}

std::string ResultChoice::Text() const {
  if (rows_.size() < 2) return {};
  return "Result " + std::to_string(shown_ + 1) + " of " + std::to_string(rows_.size()) + ".";
}

}  // namespace tessel
