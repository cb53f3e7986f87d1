#include "logic/query/RecoveryLine.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "contract/desktop/Progress.h"
#include "contract/text/TextCut.h"
#include "contract/text/Utf8.h"

namespace tessel {

namespace {

/// Milliseconds between a change and its copy; writing a long text adds its own time.
constexpr int copyMilliseconds = 1000;
constexpr std::size_t mostShown = 40;

/// The first line that has something in it, cut to a length that a line can show.
std::string Beginning(const std::string& text) {
  const std::size_t start = std::min(text.find_first_not_of(" \t\r\n"), text.size());
  std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
  const bool cut = end - start > mostShown;
  if (cut) end = start + mostShown;
  while (end > start && end < text.size() && ContinuesCharacter(text[end])) --end;
  return text.substr(start, end - start) + (cut ? "..." : "");
}

std::string NameOf(const UnsavedText& unsaved) {
  std::string name = unsaved.origin.path;
  KeepAfterLast(name, std::string_view(&pathSeparator, 1));
  return name.empty() ? "untitled" : name;
}

}  // namespace

RecoveryLine::RecoveryLine(const Global& global, Window& window, RecoveryHost& host)
    : global_(global),
      host_(host),
      copy_(global),
      timer_(window.TimerNamed("tmrRecovery")),
      fraRecovery_(window.Find<PictureBox>("fraRecovery")),
      labRecovery_(window.Find<Label>("labRecovery")),
      cmdTakeBack_(window.Find<Button>("cmdTakeBack")),
      cmdDiscardCopy_(window.Find<Button>("cmdDiscardCopy")) {
  timer_.SetInterval(copyMilliseconds);
  timer_.Tick = [this] { tmrRecovery_Tick(); };
  cmdTakeBack_.Click = [this] { cmdTakeBack_Click(); };
  cmdDiscardCopy_.Click = [this] { cmdDiscardCopy_Click(); };
  window.Find<Button>("cmdCloseRecovery").Click = [this] {
    notice_.clear();
    fraRecovery_.SetVisible(false);
  };
  copy_.FindLeft();
  ShowLine();
}

void RecoveryLine::NoteSaved() {
  timer_.SetEnabled(false);
  copy_.Discard();
}

void RecoveryLine::Tell(const std::string& notice) {
  notice_ = notice;
  ShowLine();
}

void RecoveryLine::KeepNow() {
  if (timer_.Enabled()) tmrRecovery_Tick();
}

/// After a failure the timer goes on: there may be room again before the next change.
void RecoveryLine::tmrRecovery_Tick() {
  const auto unsaved = host_.Unsaved();
  try {
    if (unsaved && !unsaved->text.empty()) copy_.Keep(*unsaved);
    else copy_.Discard();
    timer_.SetEnabled(false);
  } catch (const Error& error) {
    if (!failure_.empty()) return;
    failure_ = "No recovery copy of the SQL can be kept: " + error.Description() + ".";
    ShowLine();
  }
}

/// The copy of the earlier run goes once this run has one of its own.
void RecoveryLine::cmdTakeBack_Click() {
  if (!host_.TakeBack(copy_.FirstLeft())) return;
  NoteChange();
  KeepNow();
  if (timer_.Enabled()) return;
  RemoveLeft();
}

void RecoveryLine::cmdDiscardCopy_Click() {
  Message question;
  question.text = "Discard the unsaved SQL of an earlier run?\r\n\r\n" + NameOf(copy_.FirstLeft()) +
                  ": " + Beginning(copy_.FirstLeft().text);
  question.buttons = MessageButtons::YesNo;
  question.icon = MessageIcon::Question;
  question.captions = {"&Discard", "&Keep"};
  question.defaultAnswer = MessageResult::No;
  if (Help(global_).Ask(question, helpContext::question) == MessageResult::Yes) RemoveLeft();
}

void RecoveryLine::RemoveLeft() {
  try {
    copy_.RemoveFirstLeft();
  } catch (const Error& error) {
    failure_ = "The recovery copy cannot be removed: " + error.Description() + ".";
  }
  ShowLine();
}

std::string RecoveryLine::Offer() const {
  const std::size_t count = copy_.LeftCount();
  if (count == 0) return {};
  const std::string more = count > 1 ? ", and " + std::to_string(count - 1) + " more" : "";
  const UnsavedText& first = copy_.FirstLeft();
  return "Unsaved SQL was kept from an earlier run" + more + ". " + NameOf(first) + ": " +
         Beginning(first.text);
}

void RecoveryLine::ShowLine() {
  const std::string offer = Offer();
  std::string text;
  for (const std::string& line : {notice_, failure_, offer})
    if (!line.empty()) text += (text.empty() ? "" : "\n") + line;
  labRecovery_.SetCaption(text);
  cmdTakeBack_.SetVisible(!offer.empty());
  cmdDiscardCopy_.SetVisible(!offer.empty());
  fraRecovery_.SetVisible(!text.empty());
}

}  // namespace tessel
