#include "logic/query/editing/EditCommands.h"

#include <string>

#include "logic/query/editing/CommentLines.h"
#include "logic/text/LineEnds.h"

namespace tessel {

void EditCommands::Cut() {
  Copy();
  Delete();
}

void EditCommands::Copy() {
  if (HasSelection()) desktop_.TheClipboard().SetText(box_.SelText());
}

void EditCommands::Paste() {
  const std::string text = desktop_.TheClipboard().Text();
  if (!text.empty()) box_.SetSelText(WithLineEndsOf(box_.Text(), text));
}

void EditCommands::Delete() {
  if (HasSelection()) box_.SetSelText("");
}

void EditCommands::SelectAll() { box_.Select(0, box_.Text().size()); }

void EditCommands::Comment() {
  const std::size_t begin = box_.SelStart();
  const LineChange change = CommentOrUncomment(box_.Text(), {begin, begin + box_.SelLength()});
  box_.Select(change.replaced.begin, change.replaced.end - change.replaced.begin);
  box_.SetSelText(change.text);
  box_.Select(change.selected.begin, change.selected.end - change.selected.begin);
}

}  // namespace tessel
