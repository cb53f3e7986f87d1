#include "tests/headless/ControlSet.h"

#include <algorithm>
#include <stdexcept>

#include "tests/headless/HeadlessDrawings.h"
#include "tests/headless/HeadlessGrid.h"
#include "tests/headless/HeadlessListView.h"
#include "tests/headless/HeadlessLists.h"
#include "tests/headless/HeadlessText.h"
#include "tests/headless/HeadlessTreeView.h"
#include "tests/headless/HeadlessValues.h"

namespace tessel::test {

namespace {

/// What every control is made with.
struct Surroundings {
  FailureSink& failures;
  FocusKeeper& keeper;
  HeadlessControl* container;
  OptionGroup& group;
  Clipboard& clipboard;
};

template <class Kind>
std::unique_ptr<HeadlessControl> Make(const FormWidget& widget, const Surroundings& around) {
  return std::make_unique<Kind>(widget, around.failures, around.keeper, around.container);
}

std::unique_ptr<HeadlessControl> MakeControl(const FormWidget& widget, const Surroundings& around) {
  switch (widget.kind) {
    case ControlKind::Label: return Make<HeadlessLabel>(widget, around);
    case ControlKind::PictureBox: return Make<HeadlessPictureBox>(widget, around);
    case ControlKind::Button: return Make<HeadlessButton>(widget, around);
    case ControlKind::CheckBox: return Make<HeadlessCheckBox>(widget, around);
    case ControlKind::OptionButton:
      return std::make_unique<HeadlessOptionButton>(widget, around.failures, around.keeper,
                                                    around.container, around.group);
    case ControlKind::TextBox: return Make<HeadlessTextBox>(widget, around);
    case ControlKind::RichTextBox: return Make<HeadlessRichTextBox>(widget, around);
    case ControlKind::HexBox: return Make<HeadlessHexBox>(widget, around);
    case ControlKind::ImageBox: return Make<HeadlessImageBox>(widget, around);
    case ControlKind::ComboBox: return Make<HeadlessComboBox>(widget, around);
    case ControlKind::ListBox: return Make<HeadlessListBox>(widget, around);
    case ControlKind::ListView: return Make<HeadlessListView>(widget, around);
    case ControlKind::TreeView: return Make<HeadlessTreeView>(widget, around);
    case ControlKind::DataGrid:
      return std::make_unique<HeadlessGrid>(widget, around.failures, around.keeper,
                                            around.container, around.clipboard);
    case ControlKind::ProgressBar: return Make<HeadlessProgressBar>(widget, around);
    case ControlKind::ChartBox: return Make<HeadlessChartBox>(widget, around);
    case ControlKind::DiagramBox: return Make<HeadlessDiagramBox>(widget, around);
    case ControlKind::None: break;
  }
  throw std::logic_error(widget.name + " is of no kind.");
}

template <class Map>
auto FindIn(const Map& items, std::string_view name) {
  const auto found = items.find(name);
  return found == items.end() ? nullptr : found->second;
}

}  // namespace

ControlSet::ControlSet(const FormFile& form, FailureSink& failures, FocusKeeper& keeper,
                       Clipboard& clipboard) {
  MakeControls(form, failures, keeper, clipboard);
  MakeMenus(form, failures);
  MakeTabOrder(form);
}

void ControlSet::MakeControls(const FormFile& form, FailureSink& failures, FocusKeeper& keeper,
                              Clipboard& clipboard) {
  for (const FormWidget& widget : form.widgets) {
    const Surroundings around{failures, keeper, Find(widget.container), groups_[widget.container],
                              clipboard};
    controls_.push_back(MakeControl(widget, around));
    if (!byName_.emplace(widget.name, controls_.back().get()).second)
      throw std::runtime_error("Form " + form.name + " has two controls " + widget.name + ".");
  }
}

void ControlSet::MakeMenus(const FormFile& form, FailureSink& failures) {
  for (const FormMenuItem& item : form.menus) {
    menus_.push_back(std::make_unique<HeadlessMenuItem>(item, failures));
    menusByName_[item.name] = menus_.back().get();
  }
  for (const FormMenuItem& item : form.menus)
    for (const std::string& entry : item.entries)
      if (HeadlessMenuItem* child = FindMenu(entry)) FindMenu(item.name)->Append(*child);
}

void ControlSet::MakeTabOrder(const FormFile& form) {
  for (const std::string& name : form.tabStops)
    if (HeadlessControl* control = Find(name)) tabOrder_.push_back(control);
  for (const auto& control : controls_)
    if (std::ranges::find(tabOrder_, control.get()) == tabOrder_.end())
      tabOrder_.push_back(control.get());
}

HeadlessControl* ControlSet::Find(std::string_view name) const { return FindIn(byName_, name); }

HeadlessMenuItem* ControlSet::FindMenu(std::string_view name) const {
  return FindIn(menusByName_, name);
}

HeadlessMenuItem* ControlSet::FindShortcut(int keyCode, int shift) const {
  for (const auto& item : menus_)
    if (item->HasShortcut(keyCode, shift) && item->CanBeChosen(nullptr)) return item.get();
  return nullptr;
}

HeadlessControl* ControlSet::NextFocus(const HeadlessControl* control) const {
  return StepFocus(control, true);
}

HeadlessControl* ControlSet::PreviousFocus(const HeadlessControl* control) const {
  return StepFocus(control, false);
}

HeadlessControl* ControlSet::StepFocus(const HeadlessControl* control, bool forwards) const {
  const std::size_t count = tabOrder_.size();
  if (count == 0) return nullptr;
  std::size_t place =
      static_cast<std::size_t>(std::ranges::find(tabOrder_, control) - tabOrder_.begin());
  if (place == count) place = forwards ? count - 1 : 0;
  for (std::size_t tried = 0; tried < count; ++tried) {
    place = (place + (forwards ? 1 : count - 1)) % count;
    HeadlessControl* candidate = tabOrder_[place];
    if (candidate->StopsTab() && candidate->TakesFocus() && candidate->Usable()) return candidate;
  }
  return nullptr;
}

}  // namespace tessel::test
