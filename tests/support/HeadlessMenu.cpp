#include "tests/support/HeadlessMenu.h"

namespace tessel::test {

HeadlessMenuItem::HeadlessMenuItem(const FormMenuItem& item, FailureSink& failures)
    : MenuItem(item.name, failures),
      caption_(item.caption),
      checkable_(item.properties.Flag("checkable", false)),
      checked_(item.properties.Flag("checked", false)),
      enabled_(item.properties.Flag("enabled", true)),
      visible_(item.properties.Flag("visible", true)),
      isTitle_(item.isTitle),
      inMenuBar_(item.inMenuBar),
      shortcut_(item.shortcut) {}

void HeadlessMenuItem::Append(HeadlessMenuItem& entry) {
  entries_.push_back(&entry);
  entry.parent_ = this;
}

bool HeadlessMenuItem::InMenuBar() const {
  return inMenuBar_ || (parent_ != nullptr && parent_->InMenuBar());
}

bool HeadlessMenuItem::HasShortcut(int keyCode, int shift) const {
  return shortcut_ && shortcut_->keyCode == keyCode && shortcut_->shift == shift;
}

bool HeadlessMenuItem::CanBeChosen(const HeadlessMenuItem* root) const {
  if (!visible_ || !enabled_) return false;
  return this == root || parent_ == nullptr || parent_->CanBeChosen(root);
}

void HeadlessMenuItem::OpenTitles(const HeadlessMenuItem* root) {
  if (parent_ == nullptr || parent_ == root) return;
  parent_->OpenTitles(root);
  parent_->RaiseOpening();
}

}  // namespace tessel::test
