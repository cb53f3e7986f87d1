#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "contract/desktop/controls/ListControls.h"
#include "tests/headless/HeadlessControl.h"
#include "tests/headless/HeadlessText.h"
#include "tests/support/TestStop.h"

namespace tessel::test {

/// Something a user picks one of several entries from.
class EntryPicker {
 public:
  /// Picks an entry; Click follows when another one becomes selected.
  virtual void PickEntry(int index) = 0;

 protected:
  ~EntryPicker() = default;
};

/// The entries of a list or combo box.
template <class Kind>
class HeadlessListControl : public Headless<Kind>, public EntryPicker {
 public:
  HeadlessListControl(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                      HeadlessControl* container)
      : Headless<Kind>(widget, failures, keeper, container), entries_(widget.items) {}

  [[nodiscard]] int ListCount() const override { return static_cast<int>(entries_.size()); }
  [[nodiscard]] std::string List(int index) const override { return entries_[Checked(index)]; }
  void AddItem(std::string_view text) override { entries_.emplace_back(text); }
  void Clear() override {
    entries_.clear();
    selected_ = -1;
  }

  void PickEntry(int index) override { this->SetListIndex(static_cast<int>(Checked(index))); }

  bool TakeKey(int keyCode, int shift) override {
    const int last = ListCount() - 1;
    if (shift != shiftState::none || last < 0) return false;
    if (keyCode == key::up) this->SetListIndex(selected_ > 0 ? selected_ - 1 : 0);
    else if (keyCode == key::down) this->SetListIndex(selected_ < last ? selected_ + 1 : last);
    else if (keyCode == key::home) this->SetListIndex(0);
    else if (keyCode == key::end) this->SetListIndex(last);
    else return false;
    return true;
  }

 protected:
  [[nodiscard]] int ReadIndex() const override { return selected_; }
  void WriteIndex(int index) override {
    selected_ = index == -1 ? -1 : static_cast<int>(Checked(index));
  }
  void ForgetSelection() { selected_ = -1; }

 private:
  [[nodiscard]] std::size_t Checked(int index) const {
    if (index < 0 || index >= ListCount())
      StopTest(this->Name() + " has no entry " + std::to_string(index) + ".");
    return static_cast<std::size_t>(index);
  }

  std::vector<std::string> entries_;
  int selected_ = -1;
};

class HeadlessListBox final : public HeadlessListControl<ListBox> {
 public:
  using HeadlessListControl::HeadlessListControl;
  void Clear() override {
    HeadlessListControl::Clear();
    shown_ = nullptr;
  }
  void SetLines(TextLines lines, ShownText shown) override {
    Clear();
    for (std::size_t i = 0; i < lines.Size(); ++i) AddItem(lines[i]);
    shown_ = std::move(shown);
  }
  [[nodiscard]] std::string Line(int index) const override {
    return HeadlessListControl::List(index);
  }
  [[nodiscard]] std::string List(int index) const override {
    return shown_ ? shown_(Line(index)) : Line(index);
  }
  [[nodiscard]] int RowHeight() const override { return 195; }
  /// As if each byte were of the same width.
  [[nodiscard]] int WidthFor(int rows) const override {
    std::size_t longest = 0;
    for (int i = 0; i < ListCount(); ++i) longest = std::max(longest, List(i).size());
    return static_cast<int>(longest) * 120 + (ListCount() > rows ? 240 : 0);
  }

 private:
  ShownText shown_;
};

/// An editable box's text is its own: picking an entry sets it, other texts leave no entry
/// selected.
class HeadlessComboBox final : public HeadlessListControl<ComboBox>, public Typist {
 public:
  HeadlessComboBox(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                   HeadlessControl* container);

  [[nodiscard]] bool Editable() const override { return editable_; }
  void SelectAllText() override { allSelected_ = true; }
  void Clear() override;

  /// Types at the end, or in place of the text when all of it is selected.
  void TypeText(std::string_view text) override;
  bool TakeKey(int keyCode, int shift) override;
  [[nodiscard]] bool AllTextSelected() const { return allSelected_; }

 protected:
  [[nodiscard]] std::string ReadText() const override { return text_; }
  void WriteText(std::string_view text) override;
  void WriteIndex(int index) override;

 private:
  void ShowSelected();

  bool editable_;
  bool allSelected_ = false;
  std::string text_;
};

}  // namespace tessel::test
