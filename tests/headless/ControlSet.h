#pragma once

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "contract/desktop/Desktop.h"
#include "tests/headless/FormFile.h"
#include "tests/headless/HeadlessBasics.h"
#include "tests/headless/HeadlessControl.h"
#include "tests/headless/HeadlessMenu.h"

namespace tessel::test {

/// The controls and menus of one window, made from its form.
class ControlSet {
 public:
  ControlSet(const FormFile& form, FailureSink& failures, FocusKeeper& keeper,
             Clipboard& clipboard);

  /// The control of that name, or null.
  [[nodiscard]] HeadlessControl* Find(std::string_view name) const;
  /// The menu command or title of that name, or null.
  [[nodiscard]] HeadlessMenuItem* FindMenu(std::string_view name) const;
  [[nodiscard]] const std::vector<std::unique_ptr<HeadlessControl>>& Controls() const {
    return controls_;
  }
  [[nodiscard]] const std::vector<std::unique_ptr<HeadlessMenuItem>>& Menus() const {
    return menus_;
  }
  /// The command of that shortcut that can be chosen now, or null.
  [[nodiscard]] HeadlessMenuItem* FindShortcut(int keyCode, int shift) const;

  /// The first control in tab order, behind `control` (null: from the start) and round, that can
  /// take the focus; null when none can.
  [[nodiscard]] HeadlessControl* NextFocus(const HeadlessControl* control) const;
  [[nodiscard]] HeadlessControl* PreviousFocus(const HeadlessControl* control) const;
  /// The first usable control for which `fits` says so, or null.
  template <class Condition>
  [[nodiscard]] HeadlessControl* FindUsable(Condition fits) const {
    for (const auto& control : controls_)
      if (control->Usable() && fits(*control)) return control.get();
    return nullptr;
  }

 private:
  void MakeControls(const FormFile& form, FailureSink& failures, FocusKeeper& keeper,
                    Clipboard& clipboard);
  void MakeMenus(const FormFile& form, FailureSink& failures);
  void MakeTabOrder(const FormFile& form);
  [[nodiscard]] HeadlessControl* StepFocus(const HeadlessControl* control, bool forwards) const;

  std::map<std::string, OptionGroup, std::less<>> groups_;
  std::vector<std::unique_ptr<HeadlessControl>> controls_;
  std::vector<std::unique_ptr<HeadlessMenuItem>> menus_;
  std::map<std::string, HeadlessControl*, std::less<>> byName_;
  std::map<std::string, HeadlessMenuItem*, std::less<>> menusByName_;
  std::vector<HeadlessControl*> tabOrder_;
};

}  // namespace tessel::test
