// The find line of a text: its buttons and keys, and the slices in which a search is done.

#include "logic/text/find/FindLine.h"

#include <algorithm>
#include <array>
#include <utility>

#include "contract/base/Error.h"
#include "contract/desktop/controls/ListControls.h"
#include "logic/text/find/TextPattern.h"

namespace tessel {

namespace {

/// Steps of a pattern until the window has its turn: some milliseconds.
constexpr std::size_t stepsOfSlice = 80'000;
constexpr std::size_t stepsAtOnce = 20'000;
constexpr int betweenSlices = 1;  ///< Milliseconds.
/// Bytes of a selection that is taken as what is looked for.
constexpr std::size_t longestProposal = 500;

}  // namespace

FindLine::FindLine(Window& window, EditorBox& box)
    : box_(box),
      timer_(window.TimerNamed("tmrFind")),
      fraFind_(window.Find<PictureBox>("fraFind")),
      fraReplace_(window.Find<PictureBox>("fraReplace")),
      txtFind_(window.Find<TextBox>("txtFind")),
      txtReplace_(window.Find<TextBox>("txtReplace")),
      cmdFindNext_(window.Find<Button>("cmdFindNext")),
      cmdFindPrevious_(window.Find<Button>("cmdFindPrevious")),
      chkFindWords_(window.Find<CheckBox>("chkFindWords")),
      chkFindCase_(window.Find<CheckBox>("chkFindCase")),
      chkFindRegex_(window.Find<CheckBox>("chkFindRegex")),
      chkFindSelection_(window.Find<CheckBox>("chkFindSelection")),
      cmdReplace_(window.Find<Button>("cmdReplace")),
      cmdReplaceAll_(window.Find<Button>("cmdReplaceAll")),
      cmdCloseFind_(window.Find<Button>("cmdCloseFind")),
      labFound_(window.Find<Label>("labFound")) {
  timer_.SetInterval(betweenSlices);
  timer_.Tick = [this] { RunSlice(); };
  WireControls();
}

void FindLine::WireControls() {
  cmdFindNext_.Click = [this] { FindNext(); };
  cmdFindPrevious_.Click = [this] { FindPrevious(); };
  cmdReplace_.Click = [this] { cmdReplace_Click(); };
  cmdReplaceAll_.Click = [this] { cmdReplaceAll_Click(); };
  cmdCloseFind_.Click = [this] { Leave(); };
  chkFindSelection_.Click = [this] { chkFindSelection_Click(); };
  txtFind_.KeyDown = [this](KeyEvent& event) { txtFind_KeyDown(event); };
  txtReplace_.KeyDown = [this](KeyEvent& event) { txtReplace_KeyDown(event); };
}

// --- the line ------------------------------------------------------------------------------------

void FindLine::Open(bool replacing) {
  if (!HasFocus()) ProposeSelection();
  fraFind_.SetVisible(true);
  fraReplace_.SetVisible(replacing && !box_.Locked());
  txtFind_.SetFocus();
  txtFind_.Select(0, txtFind_.Text().size());
}

void FindLine::ProposeSelection() {
  labFound_.SetCaption("");
  const TextRange selected = Selection();
  if (selected.begin == selected.end) return;
  const bool isShort = selected.end - selected.begin <= longestProposal;
  const std::string text = isShort ? box_.SelText() : std::string();
  if (isShort && text.find('\n') == std::string::npos) return txtFind_.SetText(text);
  chkFindSelection_.SetValue(false);
  chkFindSelection_.SetValue(true);
}

void FindLine::Leave() {
  if (Searching()) return Stop();
  fraFind_.SetVisible(false);
  text_.reset();
  chkFindSelection_.SetValue(false);
  box_.SetFocus();
}

bool FindLine::HasFocus() const {
  const std::array<const Control*, 11> controls = {
      &txtFind_,      &txtReplace_,    &cmdFindNext_,  &cmdFindPrevious_,
      &chkFindWords_, &chkFindCase_,   &chkFindRegex_, &chkFindSelection_,
      &cmdReplace_,   &cmdReplaceAll_, &cmdCloseFind_};
  return std::ranges::any_of(controls, [](const Control* control) { return control->HasFocus(); });
}

bool FindLine::TakeKey(const KeyEvent& event) {
  const bool shifted = event.shift == shiftState::shift;
  if (!shifted && event.shift != shiftState::none) return false;
  if (event.keyCode == key::f3) {
    if (shifted) FindPrevious();
    else FindNext();
    return true;
  }
  if (event.keyCode != key::escape || shifted || !(Searching() || HasFocus())) return false;
  Leave();
  return true;
}

void FindLine::txtFind_KeyDown(KeyEvent& event) {
  if (event.keyCode != key::enter || (event.shift & ~shiftState::shift) != 0) return;
  event.handled = true;
  if (event.shift == shiftState::shift) FindPrevious();
  else FindNext();
}

void FindLine::txtReplace_KeyDown(KeyEvent& event) {
  if (event.keyCode != key::enter || event.shift != shiftState::none) return;
  event.handled = true;
  cmdReplace_Click();
}

/// The part that is selected when the box is ticked; it stays while matches are selected.
void FindLine::chkFindSelection_Click() {
  scope_.reset();
  if (!chkFindSelection_.Value()) return;
  const TextRange selected = Selection();
  if (selected.begin < selected.end) {
    scope_ = selected;
    return;
  }
  chkFindSelection_.SetValue(false);
  labFound_.SetCaption("Select the text to search in first.");
}

void FindLine::NoteChange() {
  if (replacing_) return;
  text_.reset();
  if (Searching()) Stop();
  if (scope_) chkFindSelection_.SetValue(false);
}

// --- what is looked for --------------------------------------------------------------------------

TextRange FindLine::Selection() const {
  return {box_.SelStart(), box_.SelStart() + box_.SelLength()};
}

Replacement FindLine::ReplacementWanted() const {
  return {txtReplace_.Text(), chkFindRegex_.Value()};
}

/// Nothing when there is nothing to look for, or it is wrong, which has been said then.
std::optional<SearchGround> FindLine::Ground() {
  if (Searching()) Stop();
  labFound_.SetCaption("");
  if (txtFind_.Text().empty()) {
    Open(fraReplace_.Visible());
    return std::nullopt;
  }
  try {
    auto pattern = std::make_shared<const PatternProgram>(MakePattern(
        txtFind_.Text(), {chkFindWords_.Value(), chkFindCase_.Value(), chkFindRegex_.Value()}));
    if (text_ == nullptr) text_ = std::make_shared<const std::string>(box_.Text());
    return SearchGround{text_, std::move(pattern), scope_.value_or(TextRange{0, text_->size()})};
  } catch (const Error& error) {
    labFound_.SetCaption(error.Description());
    return std::nullopt;
  }
}

void FindLine::Find(TextSearch::Direction direction) {
  std::optional<SearchGround> ground = Ground();
  if (!ground) return;
  const TextRange selected = Selection();
  const bool forwards = direction == TextSearch::Direction::Forwards;
  job_ = SearchJob{std::make_unique<TextSearch>(
      std::move(*ground), direction, forwards ? selected.end : selected.begin, selected)};
  RunSlice();
}

/// The selection is looked at again: only a match is replaced.
void FindLine::cmdReplace_Click() {
  std::optional<SearchGround> ground = Ground();
  if (!ground || box_.Locked()) return;
  job_ = SearchJob{std::make_unique<TextSearch>(std::move(*ground), TextSearch::Direction::Forwards,
                                                Selection().begin),
                   Purpose::ReplaceSelected};
  RunSlice();
}

void FindLine::cmdReplaceAll_Click() {
  std::optional<SearchGround> ground = Ground();
  if (!ground || box_.Locked()) return;
  job_ = std::make_unique<ReplaceAll>(std::move(*ground), ReplacementWanted());
  RunSlice();
}

// --- searching in slices -------------------------------------------------------------------------

void FindLine::RunSlice() {
  StepState state = StepState::Running;
  for (std::size_t done = 0; state == StepState::Running && done < stepsOfSlice;
       done += stepsAtOnce)
    state = StepOnce();
  timer_.SetEnabled(state == StepState::Running);
  if (state != StepState::Running) return Finish(state);
  labFound_.SetCaption("Searching... " + std::to_string(Percent()) + " % (Esc stops)");
}

StepState FindLine::StepOnce() {
  if (auto* search = std::get_if<SearchJob>(&job_)) return search->search->Step(stepsAtOnce);
  if (auto* replace = std::get_if<ReplaceJob>(&job_)) return (*replace)->Step(stepsAtOnce);
  return StepState::NotFound;
}

int FindLine::Percent() const {
  if (const auto* search = std::get_if<SearchJob>(&job_)) return search->search->Percent();
  if (const auto* replace = std::get_if<ReplaceJob>(&job_)) return (*replace)->Percent();
  return 0;
}

void FindLine::Stop() {
  timer_.SetEnabled(false);
  job_ = std::monostate();
  labFound_.SetCaption("Stopped.");
}

void FindLine::Finish(StepState state) {
  const auto job = std::exchange(job_, std::monostate());
  if (state == StepState::NotFound) return labFound_.SetCaption("Not found.");
  if (const auto* search = std::get_if<SearchJob>(&job)) FinishSearch(*search);
  if (const auto* replaced = std::get_if<ReplaceJob>(&job)) FinishReplacing(**replaced);
}

void FindLine::FinishSearch(const SearchJob& job) {
  const TextSearch& search = *job.search;
  const TextRange match = search.Match();
  if (job.purpose == Purpose::ReplaceSelected && match == Selection())
    return ReplaceSelected(search);
  box_.Select(match.begin, match.end - match.begin);
  if (!search.CameRound()) return labFound_.SetCaption("");
  labFound_.SetCaption(search.GoesForwards() ? "Went on from the top." : "Went on from the end.");
}

/// And goes to the next one.
void FindLine::ReplaceSelected(const TextSearch& search) {
  const TextRange match = search.Match();
  const std::string text = TextInPlace(ReplacementWanted(), *text_, search.Groups());
  Put(match, text);
  box_.Select(match.begin + text.size(), 0);
  FindNext();
}

void FindLine::FinishReplacing(const ReplaceAll& replaced) {
  const std::size_t caret = replaced.PlaceInNew(Selection().end);
  Put(replaced.Replaced(), replaced.NewText());
  box_.Select(caret, 0);
  labFound_.SetCaption(std::to_string(replaced.Count()) + " replaced.");
}

/// The part in which is searched grows and shrinks with what stands in it.
void FindLine::Put(const TextRange& range, const std::string& text) {
  if (scope_) scope_->end = scope_->end - (range.end - range.begin) + text.size();
  replacing_ = true;
  box_.Select(range.begin, range.end - range.begin);
  box_.SetSelText(text);
  replacing_ = false;
  text_.reset();
}

}  // namespace tessel
