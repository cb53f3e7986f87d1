#pragma once

#include <optional>
#include <string>
#include <vector>

#include "contract/desktop/controls/MenuItem.h"
#include "tests/headless/FormFile.h"

namespace tessel::test {

class HeadlessMenuItem final : public MenuItem {
 public:
  HeadlessMenuItem(const FormMenuItem& item, FailureSink& failures);

  [[nodiscard]] std::string Caption() const override { return caption_; }
  void SetCaption(std::string_view caption) override { caption_ = caption; }
  [[nodiscard]] bool Checked() const override { return checked_; }
  void SetChecked(bool checked) override { checked_ = checked; }
  [[nodiscard]] bool Enabled() const override { return enabled_; }
  void SetEnabled(bool enabled) override { enabled_ = enabled; }
  [[nodiscard]] bool Visible() const override { return visible_; }
  void SetVisible(bool visible) override { visible_ = visible; }

  [[nodiscard]] bool IsTitle() const { return isTitle_; }
  /// Whether it is reached from the menu bar and not from a pop-up menu.
  [[nodiscard]] bool InMenuBar() const;
  [[nodiscard]] bool Checkable() const { return checkable_; }
  /// The first title that holds it; null for a title of its own. A command may be in several.
  [[nodiscard]] HeadlessMenuItem* ParentTitle() const {
    return parents_.empty() ? nullptr : parents_.front();
  }
  /// What a title holds, in order; separators too.
  [[nodiscard]] const std::vector<HeadlessMenuItem*>& Entries() const { return entries_; }
  void Append(HeadlessMenuItem& entry);

  /// Whether the frame's documents leave it its shortcut.
  [[nodiscard]] bool WorksEverywhere() const { return everywhere_; }
  [[nodiscard]] bool HasShortcut(int keyCode, int shift) const;
  /// Whether this and the titles above it, up to `root` (null: the last one), show and are enabled.
  [[nodiscard]] bool CanBeChosen(const HeadlessMenuItem* root) const;
  /// Opens the titles above it that lie below `root` (null: those up to the menu bar), the
  /// outermost first: a Click each.
  void OpenTitles(const HeadlessMenuItem* root);
  /// A title is about to open.
  void RaiseOpening() const { RaiseClick(); }

 private:
  [[nodiscard]] bool LiesBelow(const HeadlessMenuItem* root) const;

  std::string caption_;
  bool checkable_;
  bool checked_;
  bool enabled_;
  bool visible_;
  bool isTitle_;
  bool inMenuBar_;
  bool everywhere_;
  std::optional<FormShortcut> shortcut_;
  std::vector<HeadlessMenuItem*> parents_;
  std::vector<HeadlessMenuItem*> entries_;
};

}  // namespace tessel::test
