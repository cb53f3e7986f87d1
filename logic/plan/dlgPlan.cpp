#include "logic/plan/dlgPlan.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListView.h"
#include "logic/text/frmText.h"

namespace tessel {

namespace {

constexpr Color costliestColor = 0x0000C0;  ///< A dark red; the word beside it says the same.
constexpr int rawContext = 9106;

/// Of the columns, in twips; the last one takes what is left. Steps stand indented.
constexpr std::array columnWidths = {4200, 1800, 1400, 900, 1000, 1700};
constexpr int onlyStepsWidth = 7200;  ///< Of the first, where nothing stands in the others.

std::string WholeText(double number) {
  return std::to_string(static_cast<std::int64_t>(std::llround(number)));
}

/// With as many decimals as a number of its size needs.
std::string ShortText(double number) {
  if (number >= 100) return WholeText(number);
  const auto scaled = static_cast<std::int64_t>(std::llround(number * 1000));
  std::string decimals = std::to_string(scaled % 1000);
  decimals.insert(0, 3 - decimals.size(), '0');
  return std::to_string(scaled / 1000) + "." + decimals;
}

std::string Whole(const std::optional<double>& number) {
  if (!number) return {};
  return *number >= 1 || *number == 0 ? WholeText(*number) : ShortText(*number);
}

std::string ShareText(const Plan& plan, const PlanStep& step) {
  if (plan.measure == PlanMeasure::Nothing) return {};
  return WholeText(step.share * 100) + " %" + (step.costliest ? ", the most" : "");
}

const char* MeasureText(PlanMeasure measure) {
  switch (measure) {
    case PlanMeasure::Time: return "The share is that of the time.";
    case PlanMeasure::Cost: return "The share is that of the estimated cost.";
    case PlanMeasure::RowsRead: return "The share is that of the rows to be read.";
    case PlanMeasure::Nothing: break;
  }
  return "";
}

ListRow RowOf(const Plan& plan, const PlanStep& step, int depth) {
  ListRow row;
  row.text = std::string(static_cast<std::size_t>(depth) * 3, ' ') + step.name;
  row.subItems = {Whole(step.rowsExpected), Whole(step.rowsReal),
                  Whole(step.loops),        step.milliseconds ? ShortText(*step.milliseconds) : "",
                  ShareText(plan, step),    step.details};
  row.toolTip = step.name + (step.details.empty() ? "" : "\n" + step.details);
  if (step.costliest) row.foreColor = costliestColor;
  return row;
}

/// A plan's window while it shows.
class dlgPlan {
 public:
  dlgPlan(const Global& global, SqlTarget& sqlWindow, const ShownPlan& shown)
      : global_(global),
        sqlWindow_(sqlWindow),
        shown_(shown),
        window_(global.TheDesktop().MakeWindow("dlgPlan")) {
    window_->Find<Button>("cmdMeasure").Click = [this] {
      wish_ = PlanWish::Measure;
      window_->Hide();
    };
    window_->Find<Button>("cmdRaw").Click = [this] { ShowRaw(); };
    window_->Find<Button>("cmdCopy").Click = [this] {
      global_.TheDesktop().TheClipboard().SetText(shown_.raw);
    };
    window_->Find<Button>("cmdClose").Click = [this] { window_->Hide(); };
    Fill();
  }

  PlanWish Go(Window& owner) {
    window_->ShowModal(&owner);
    window_->Unload();
    return wish_;
  }

 private:
  void Fill() {
    const Plan& plan = shown_.plan;
    window_->SetCaption(shown_.connection + " - Plan");
    const std::string measure = MeasureText(plan.measure);
    window_->Find<Label>("lblPlan").SetCaption(plan.note +
                                               (plan.note.empty() || measure.empty() ? ""
                                                : plan.note.ends_with('.')           ? " "
                                                                                     : ". ") +
                                               measure);
    ListView& list = window_->Find<ListView>("lsvPlan");
    int costliest = 0;
    for (const auto& [step, depth] : StepsOf(plan)) {
      const int row = list.Insert(list.Count(), RowOf(plan, *step, depth));
      if (step->costliest) costliest = row;
    }
    list.SetSelectedIndex(costliest);
    for (std::size_t column = 0; column < columnWidths.size(); ++column)
      list.SetColumnWidth(static_cast<int>(column), columnWidths[column]);
    if (plan.measure == PlanMeasure::Nothing) list.SetColumnWidth(0, onlyStepsWidth);
    window_->Find<Button>("cmdMeasure").SetVisible(shown_.canMeasure);
  }

  void ShowRaw() {
    ViewText(global_, sqlWindow_, shown_.raw,
             {rawContext, "JSON Files (*.json)|*.json", 9600, 6300, false, false,
              window_->Caption() + " as told"});
  }

  const Global& global_;
  SqlTarget& sqlWindow_;
  const ShownPlan& shown_;
  std::unique_ptr<Window> window_;
  PlanWish wish_ = PlanWish::Nothing;
};

}  // namespace

PlanWish ShowPlan(const Global& global, Window& owner, SqlTarget& sqlWindow,
                  const ShownPlan& shown) {
  return dlgPlan(global, sqlWindow, shown).Go(owner);
}

}  // namespace tessel
