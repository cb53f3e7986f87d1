#include "logic/text/indent/StructuredText.h"

#include <utility>

#include "contract/base/Keys.h"

namespace tessel {

namespace {

constexpr const char* indentedSetting = "viewer indented";

}  // namespace

StructuredText::StructuredText(const Global& global, Window& window, EditorBox& box)
    : box_(box),
      chkIndented_(window.Find<CheckBox>("chkIndented")),
      lblStructure_(window.Find<Label>("lblStructure")),
      settings_(global),
      slices_(window.TimerNamed("tmrIndent"), global.TheDesktop().TheClock()) {
  slices_.Ended = [this](IndentedText indented) { EndIndenting(std::move(indented)); };
  slices_.Progress = [this](int percent) {
    lblStructure_.SetCaption("Indenting... " + std::to_string(percent) + " % (Esc stops)");
  };
}

void StructuredText::Show(const std::string& text) {
  Stop();
  const TextStructure structure = GuessStructure(text);
  box_.SetText(text);
  chkIndented_.SetVisible(structure != TextStructure::None);
  lblStructure_.SetVisible(structure != TextStructure::None);
  if (structure == TextStructure::None) return;
  box_.SetSyntax(structure == TextStructure::Json ? TextSyntax::Json : TextSyntax::Xml);
  lblStructure_.SetCaption(StructureName(structure));
  chkIndented_.Click = nullptr;
  const bool indented = settings_.Number(indentedSetting, 1) != 0 && text.size() <= longestUnasked;
  chkIndented_.SetValue(indented);
  if (indented) ShowIndented();
  chkIndented_.Click = [this] { chkIndented_Click(); };
}

std::string StructuredText::Text() const {
  std::string text = box_.Text();
  return !shown_.empty() && text == shown_ ? original_ : text;
}

bool StructuredText::TakeKey(const KeyEvent& event) {
  if (slices_.IsUnderWay() && event.keyCode == key::escape && event.shift == shiftState::none) {
    chkIndented_.SetValue(false);
    return true;
  }
  if (event.keyCode != 'I' || event.shift != shiftState::ctrl || !chkIndented_.Visible())
    return false;
  chkIndented_.SetValue(!chkIndented_.Value());
  return true;
}

void StructuredText::chkIndented_Click() {
  if (!slices_.IsUnderWay()) settings_.SetNumber(indentedSetting, chkIndented_.Value() ? 1 : 0);
  if (chkIndented_.Value()) ShowIndented();
  else ShowAsItIs();
  box_.SetFocus();
}

// --- indenting -----------------------------------------------------------------------------------

void StructuredText::ShowIndented() {
  original_ = Text();
  shown_.clear();
  if (original_.size() <= IndentSlices::longestAtOnce) return EndIndenting(Indent(original_));
  slices_.Start(original_);
  if (!slices_.IsUnderWay()) return Say({}, original_);
  wasLocked_ = box_.Locked();
  box_.SetLocked(true);
}

/// A text that breaks the rules is shown as it is, and the place is told.
void StructuredText::EndIndenting(IndentedText indented) {
  Stop();
  Say(indented, original_);
  if (indented.fault || indented.structure == TextStructure::None) return;
  shown_ = std::move(indented.text);
  box_.SetText(shown_);
}

void StructuredText::Stop() {
  slices_.Stop();
  if (wasLocked_) box_.SetLocked(*wasLocked_);
  wasLocked_.reset();
}

/// What the user has changed stays as he sees it.
void StructuredText::ShowAsItIs() {
  if (slices_.IsUnderWay()) {
    Stop();
    return lblStructure_.SetCaption(StructureName(GuessStructure(original_)));
  }
  const std::string text = Text();
  shown_.clear();
  original_.clear();
  box_.SetText(text);
}

void StructuredText::Say(const IndentedText& indented, const std::string& text) {
  std::string said(StructureName(indented.structure));
  if (indented.fault) said = "No " + said + " at " + FaultText(text, *indented.fault);
  lblStructure_.SetCaption(said);
  lblStructure_.SetToolTip(indented.fault ? said : "");
}

}  // namespace tessel
