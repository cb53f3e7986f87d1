#include "logic/text/indent/StructuredText.h"

#include <cstdint>
#include <utility>

#include "contract/base/Keys.h"

namespace tessel {

namespace {

constexpr const char* indentedSetting = "viewer indented";
constexpr int betweenSlices = 1;  ///< Milliseconds, as the next one.
constexpr std::int64_t sliceMilliseconds = 8;
constexpr std::size_t stepBytes = 64U << 10U;

}  // namespace

StructuredText::StructuredText(const Global& global, Window& window, EditorBox& box)
    : box_(box),
      chkIndented_(window.Find<CheckBox>("chkIndented")),
      lblStructure_(window.Find<Label>("lblStructure")),
      settings_(global),
      clock_(global.TheDesktop().TheClock()),
      timer_(window.TimerNamed("tmrIndent")) {
  timer_.SetInterval(betweenSlices);
  timer_.Tick = [this] { RunSlice(); };
}

void StructuredText::Show(const std::string& text) {
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
  if (work_ != nullptr && event.keyCode == key::escape && event.shift == shiftState::none) {
    chkIndented_.SetValue(false);
    return true;
  }
  if (event.keyCode != 'I' || event.shift != shiftState::ctrl || !chkIndented_.Visible())
    return false;
  chkIndented_.SetValue(!chkIndented_.Value());
  return true;
}

void StructuredText::chkIndented_Click() {
  if (work_ == nullptr) settings_.SetNumber(indentedSetting, chkIndented_.Value() ? 1 : 0);
  if (chkIndented_.Value()) ShowIndented();
  else ShowAsItIs();
  box_.SetFocus();
}

// --- indenting -----------------------------------------------------------------------------------

void StructuredText::ShowIndented() {
  original_ = Text();
  shown_.clear();
  if (original_.size() <= longestAtOnce) return EndIndenting(Indent(original_));
  work_ = StartIndenting(original_);
  if (work_ == nullptr) return Say({}, original_);
  wasLocked_ = box_.Locked();
  box_.SetLocked(true);
  timer_.SetEnabled(true);
}

void StructuredText::RunSlice() {
  if (work_ == nullptr) return timer_.SetEnabled(false);
  const std::int64_t start = clock_.Milliseconds();
  while (clock_.Milliseconds() - start < sliceMilliseconds)
    if (!work_->Step(stepBytes)) return EndIndenting(work_->Result());
  lblStructure_.SetCaption("Indenting... " + std::to_string(work_->Percent()) + " % (Esc stops)");
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
  work_.reset();
  if (!timer_.Enabled()) return;
  timer_.SetEnabled(false);
  box_.SetLocked(wasLocked_);
}

/// What the user has changed stays as he sees it.
void StructuredText::ShowAsItIs() {
  if (work_ != nullptr) {
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
