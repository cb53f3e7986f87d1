// The completion list of the query window as a person meets it: where it opens, which keys go to
// the list and which to the text, and how an accepted word takes the place of the one typed. Which
// words there are is decided elsewhere.

#include "logic/query/completion/CompletionList.h"

#include <algorithm>

#include "logic/program/Characters.h"
#include "logic/tags/TagScanner.h"
#include "logic/tags/ValueFormat.h"

namespace tessel {

namespace {

constexpr int mostRows = 7;
constexpr int listMargin = 4 * twipsPerPixel;

/// A list just below the caret line, above it when it would pass the bottom of the text, moved left
/// when it would pass the right edge. `caret` is where the caret stands inside `text`.
Rect PlaceAtCaret(Rect list, const Rect& text, const Rect& caret) {
  list.left = std::min(text.left + caret.left, text.left + text.width - list.width);
  list.left = std::max(list.left, text.left);
  list.top = text.top + caret.top + caret.height;
  if (list.top + list.height > text.top + text.height)
    list.top = text.top + caret.top - list.height;
  list.top = std::max(list.top, text.top);
  return list;
}

}  // namespace

CompletionList::CompletionList(Window& window, Vocabulary& vocabulary)
    : txtQuery_(window.Find<RichTextBox>("txtQuery")),
      lstOptions_(window.Find<ListBox>("lstOptions")),
      vocabulary_(vocabulary) {
  txtQuery_.KeyDown = [this](KeyEvent& event) { txtQuery_KeyDown(event); };
  lstOptions_.KeyDown = [this](KeyEvent& event) { lstOptions_KeyDown(event); };
  lstOptions_.DblClick = [this] { lstOptions_DblClick(); };
  lstOptions_.LostFocus = [this] { lstOptions_LostFocus(); };
}

// --- keys in the text ----------------------------------------------------------------------------

void CompletionList::txtQuery_KeyDown(KeyEvent& event) {
  event.handled = TakeCompletionKey(event) || TakeInsertionKey(event);
}

/// With Shift as well: on some keyboards these characters need it.
bool CompletionList::TakeInsertionKey(const KeyEvent& event) {
  if ((event.shift & shiftState::ctrl) == 0) return false;
  if (event.keyCode == key::apostrophe) QuoteSelection();
  else if (event.keyCode == '6') txtQuery_.SetSelText(MakeTagText("", 0, tagType::clipboard));
  else return false;
  return true;
}

bool CompletionList::TakeCompletionKey(const KeyEvent& event) {
  if ((event.shift & shiftState::ctrl) == 0) return false;
  Vocabulary::Section* section = SectionOf(event.keyCode);
  if (section == nullptr) return false;
  const bool keepCapitals = (event.shift & shiftState::shift) != 0;
  const bool splitWords = (event.shift & shiftState::alt) != 0;
  Complete(*section, {keepCapitals, splitWords});
  return true;
}

Vocabulary::Section* CompletionList::SectionOf(int keyCode) {
  switch (keyCode) {
    case 'T': return &vocabulary_.Tables();
    case 'F': return &vocabulary_.Fields();
    case key::fullStop: return &vocabulary_.Custom();
    default: return nullptr;
  }
}

/// The caret ends before the closing quote, so that an empty selection leaves it between the two.
void CompletionList::QuoteSelection() {
  txtQuery_.SetSelText(SqlQuote(txtQuery_.SelText()));
  txtQuery_.Select(txtQuery_.SelStart() - 1, 0);
}

// --- searching and showing -----------------------------------------------------------------------

/// A single match is taken at once: it leaves no choice.
void CompletionList::Complete(Vocabulary::Section& section, CompletionMode mode) {
  section_ = &section;
  mode_ = mode;
  TextLines found = Search();
  if (found.Size() == 0) return Close();
  if (found.Size() == 1) return Accept(found[0]);
  Show(std::move(found));
  lstOptions_.SetVisible(true);
  lstOptions_.SetFocus();
}

/// The typed word is the selected text, or else the run of identifier characters before the caret.
TextLines CompletionList::Search() {
  std::string typed = txtQuery_.SelText();
  if (typed.empty()) typed = TypedWord(txtQuery_.Text(), txtQuery_.SelStart());
  typedLength_ = typed.size();
  return FindCompletions(*section_, typed, mode_);
}

void CompletionList::Show(TextLines found) {
  lstOptions_.SetLines(std::move(found), [mode = mode_](std::string_view word) {
    return CompletionEntry(word, mode);
  });
  lstOptions_.SetListIndex(0);
  Place();
}

void CompletionList::Place() {
  Rect list = lstOptions_.Bounds();
  const Rect text = txtQuery_.Bounds();
  list.width = std::min(lstOptions_.WidthFor(mostRows), text.width);
  list.height = std::min(lstOptions_.ListCount(), mostRows) * lstOptions_.RowHeight() + listMargin;
  lstOptions_.SetBounds(PlaceAtCaret(list, text, txtQuery_.CaretBounds()));
}

// --- keys in the list ----------------------------------------------------------------------------

void CompletionList::lstOptions_KeyDown(KeyEvent& event) {
  event.handled = TakeCompletionKey(event) ||
                  (event.shift == shiftState::none && TakeListKey(event.keyCode)) ||
                  lstOptions_KeyPress(event.text);
}

bool CompletionList::TakeListKey(int keyCode) {
  switch (keyCode) {
    case key::enter:
    case key::tab: AcceptSelected(); break;
    case key::escape:
    case key::left:
    case key::right: Close(); break;
    case key::up: Move(-1); break;
    case key::down: Move(1); break;
    case key::pageUp: Move(-mostRows); break;
    case key::pageDown: Move(mostRows); break;
    case key::home: Move(-lstOptions_.ListCount()); break;
    case key::end: Move(lstOptions_.ListCount()); break;
    case key::back: Widen(); break;
    default: return false;
  }
  return true;
}

/// What is typed goes on with the typed word; anything that cannot belong to a word ends the
/// choice.
bool CompletionList::lstOptions_KeyPress(const std::string& text) {
  if (text.empty()) return false;
  txtQuery_.Select(txtQuery_.SelStart() + txtQuery_.SelLength(), 0);
  txtQuery_.SetSelText(text);
  if (std::ranges::all_of(text, IsIdentifierChar)) Narrow();
  else Close();
  return true;
}

/// Shows what matches now. A single match stays to be chosen, for the user is typing.
void CompletionList::Narrow() {
  TextLines found = Search();
  if (found.Size() == 0) Close();
  else Show(std::move(found));
}

/// Takes back a character of the typed word; without one left the list closes.
void CompletionList::Widen() {
  const std::size_t caret = txtQuery_.SelStart() + txtQuery_.SelLength();
  if (TypedWord(txtQuery_.Text(), caret).empty()) return Close();
  txtQuery_.Select(caret - 1, 1);
  txtQuery_.SetSelText("");
  Narrow();
}

void CompletionList::Move(int rows) {
  const int last = lstOptions_.ListCount() - 1;
  lstOptions_.SetListIndex(std::clamp(lstOptions_.ListIndex() + rows, 0, last));
}

void CompletionList::AcceptSelected() {
  const int index = lstOptions_.ListIndex();
  if (index < 0) return Close();
  Accept(lstOptions_.Line(index));
}

/// Puts the word, quoted where its database needs it, in the place of the typed one.
void CompletionList::Accept(std::string_view word) {
  if (txtQuery_.SelLength() == 0)
    txtQuery_.Select(txtQuery_.SelStart() - typedLength_, typedLength_);
  txtQuery_.SetSelText(vocabulary_.InSql(*section_, word));
  Close();
}

void CompletionList::Close() {
  lstOptions_.SetVisible(false);
  txtQuery_.SetFocus();
}

}  // namespace tessel
