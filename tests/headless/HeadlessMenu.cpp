#include "tests/headless/HeadlessMenu.h"

#include <algorithm>

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
      everywhere_(item.properties.Flag("everywhere", false)),
      shortcut_(item.shortcut) {}

void HeadlessMenuItem::Append(HeadlessMenuItem& entry) {
  entries_.push_back(&entry);
  entry.parents_.push_back(this);
}

bool HeadlessMenuItem::InMenuBar() const {
  return inMenuBar_ || std::ranges::any_of(parents_, &HeadlessMenuItem::InMenuBar);
}

bool HeadlessMenuItem::HasShortcut(int keyCode, int shift) const {
  return shortcut_ && shortcut_->keyCode == keyCode && shortcut_->shift == shift;
}

bool HeadlessMenuItem::CanBeChosen(const HeadlessMenuItem* root) const {
  if (!visible_ || !enabled_) return false;
  if (this == root || parents_.empty()) return this == root || root == nullptr;
  return std::ranges::any_of(parents_, [&](auto* parent) { return parent->CanBeChosen(root); });
}

bool HeadlessMenuItem::LiesBelow(const HeadlessMenuItem* root) const {
  return std::ranges::any_of(
      parents_, [&](auto* parent) { return parent == root || parent->LiesBelow(root); });
}

void HeadlessMenuItem::OpenTitles(const HeadlessMenuItem* root) {
  for (HeadlessMenuItem* parent : parents_) {
    if (root == nullptr ? !parent->InMenuBar() : !parent->LiesBelow(root)) continue;
    parent->OpenTitles(root);
    return parent->RaiseOpening();
  }
}

}  // namespace tessel::test
