#include "tests/headless/HeadlessLists.h"

namespace tessel::test {

HeadlessComboBox::HeadlessComboBox(const FormWidget& widget, FailureSink& failures,
                                   FocusKeeper& keeper, HeadlessControl* container)
    : HeadlessListControl(widget, failures, keeper, container),
      editable_(widget.properties.Flag("editable", false)) {
  HeadlessComboBox::WriteIndex(widget.properties.Number("currentIndex", -1));
}

void HeadlessComboBox::Clear() {
  HeadlessListControl::Clear();
  text_.clear();
}

void HeadlessComboBox::TypeText(std::string_view text) {
  while (editable_ && !text.empty()) {
    const std::string_view character = FirstCharacter(text);
    const std::string before = allSelected_ ? "" : text_;
    SetText(before + std::string(character));
    text.remove_prefix(character.size());
  }
}

bool HeadlessComboBox::TakeKey(int keyCode, int shift) {
  if (HeadlessListControl::TakeKey(keyCode, shift)) return true;
  const std::string typed = CharacterOfKey(keyCode, shift);
  if (!editable_ || typed.empty()) return false;
  TypeText(typed);
  return true;
}

void HeadlessComboBox::WriteText(std::string_view text) {
  text_ = text;
  allSelected_ = false;
  ForgetSelection();
}

void HeadlessComboBox::WriteIndex(int index) {
  HeadlessListControl::WriteIndex(index);
  ShowSelected();
}

void HeadlessComboBox::ShowSelected() {
  text_ = ReadIndex() < 0 ? "" : List(ReadIndex());
  allSelected_ = false;
}

}  // namespace tessel::test
