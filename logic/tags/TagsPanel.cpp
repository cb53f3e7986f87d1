// The list of tags as a person meets it: adding, renaming, removing and checking tags, and the
// editor that opens over a value. The frame's queries ask it for a tag's value; the tags themselves
// are kept in the store.

#include "logic/tags/TagsPanel.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "logic/program/Characters.h"
#include "logic/tags/TagScanner.h"
#include "logic/tags/TagValue.h"

namespace tessel {

namespace {

constexpr int valueColumn = 1;
constexpr int menuFromCorner = 75;
constexpr int menuEntries = 2;

bool IsTagName(const std::string& name) {
  return !name.empty() && std::ranges::all_of(name, IsIdentifierChar);
}

/// How the tag is written in SQL.
std::string TipOf(const std::string& name) {
  return MakeTagText(name, 0, tagType::named) + "  " +
         MakeTagText(name, tagFlag::quoted, tagType::named);
}

}  // namespace

TagsPanel::TagsPanel(const Surroundings& around)
    : help_(around.global),
      frame_(around.frame),
      store_(around.store),
      sqlWindow_(around.sqlWindow),
      host_(around.host),
      lsvTags_(frame_.Find<ListView>("lsvTags")),
      cboTagValue_(frame_.Find<ComboBox>("cboTagValue")),
      menuTags_(frame_.Menu("menuTags")),
      editorHeight_(cboTagValue_.Bounds().height) {
  WireControls();
  WireMenu();
}

void TagsPanel::WireControls() {
  frame_.Find<Button>("cmdAddTag").Click = [this] { cmdAddTag_Click(); };
  frame_.Find<Button>("cmdRemoveTag").Click = [this] { cmdRemoveTag_Click(); };
  lsvTags_.AfterLabelEdit = [this](int row, const std::string& name, bool& keepOld) {
    lsvTags_AfterLabelEdit(row, name, keepOld);
  };
  lsvTags_.ItemClick = [this](int row) { lsvTags_ItemClick(row); };
  lsvTags_.CellClick = [this](int row, int column, const MouseEvent& event) {
    lsvTags_CellClick(row, column, event);
  };
  lsvTags_.GotFocus = [this] { lsvTags_GotFocus(); };
  lsvTags_.Scrolled = [this] { lsvTags_Scrolled(); };
  lsvTags_.KeyDown = [this](KeyEvent& event) { lsvTags_KeyDown(event); };
  lsvTags_.KeyUp = [this](KeyEvent& event) { lsvTags_KeyUp(event); };
  lsvTags_.MouseUp = [this](const MouseEvent& event) { lsvTags_MouseUp(event); };
  cboTagValue_.KeyDown = [this](KeyEvent& event) { cboTagValue_KeyDown(event); };
}

void TagsPanel::WireMenu() {
  for (int index = 0; index < menuEntries; ++index)
    frame_.Menu("mnuTag_" + std::to_string(index)).Click = [this, index] { mnuTag_Click(index); };
  frame_.Menu("mnuTagsValue").Click = [this] { EditValue(); };
  frame_.Menu("mnuTagsRename").Click = [this] { StartRename(); };
  frame_.Menu("mnuTagsAdd").Click = [this] { cmdAddTag_Click(); };
  frame_.Menu("mnuTagsRemove").Click = [this] { cmdRemoveTag_Click(); };
}

// --- the list of tags ----------------------------------------------------------------------------

void TagsPanel::cmdAddTag_Click() {
  CloseEditor(true);
  const std::string name = FreeName();
  store_.Add(name);
  const int row =
      lsvTags_.Insert(lsvTags_.Count(), {TagStore::KeyOf(name), name, {""}, TipOf(name)});
  lsvTags_.SetSelectedIndex(row);
  lsvTags_.SetFocus();
  lsvTags_.StartLabelEdit(row);
}

/// "NewTag", or the first free one of "NewTag2", "NewTag3", ...
std::string TagsPanel::FreeName() const {
  const std::string base = "NewTag";
  std::string name = base;
  for (int number = 1; store_.Has(name);) name = base + std::to_string(++number);
  return name;
}

void TagsPanel::cmdRemoveTag_Click() {
  const int row = lsvTags_.SelectedIndex();
  if (row < 0) return;
  const ListRow tag = lsvTags_.Row(row);
  if (!MayRemove(tag)) return;
  if (EditorOpenOn(tag.key)) CloseEditor(false);
  store_.Remove(tag.key);
  lsvTags_.Remove(row);
  FollowResize();
}

/// A tag that remembers no more than one value goes without a question.
bool TagsPanel::MayRemove(const ListRow& tag) const {
  if (store_.ValuesOf(tag.key).size() < 2) return true;
  return help_.HelpMsgBoxQuestion("Remove tag '" + tag.text + "'?", MessageButtons::OkCancel,
                                  MessageIcon::Question) == MessageResult::Ok;
}

void TagsPanel::EditValue() {
  if (lsvTags_.SelectedIndex() >= 0) OpenEditor(lsvTags_.SelectedIndex());
}

void TagsPanel::StartRename() {
  if (lsvTags_.SelectedIndex() >= 0) lsvTags_.StartLabelEdit(lsvTags_.SelectedIndex());
}

void TagsPanel::lsvTags_AfterLabelEdit(int row, const std::string& name, bool& keepOld) {
  keepOld = true;
  if (!IsTagName(name)) return Notice("Please give a valid name.");
  try {
    RenameTag(row, name);
    keepOld = false;
  } catch (const Error& error) {
    Notice(error.Description());
  }
}

/// The list itself takes the new text.
void TagsPanel::RenameTag(int row, const std::string& name) {
  ListRow tag = lsvTags_.Row(row);
  store_.Rename(tag.key, name);
  const std::string key = TagStore::KeyOf(name);
  if (EditorOpenOn(tag.key)) editedKey_ = key;
  tag.key = key;
  tag.toolTip = TipOf(name);
  lsvTags_.SetRow(row, std::move(tag));
}

void TagsPanel::Notice(const std::string& text) const {
  help_.HelpMsgBoxNotice(text, MessageButtons::Ok, MessageIcon::Exclamation);
}

void TagsPanel::lsvTags_KeyDown(KeyEvent& event) {
  if (event.shift != shiftState::none) return;
  switch (event.keyCode) {
    case key::enter: EditValue(); break;
    case key::f2: StartRename(); break;
    case key::insert: cmdAddTag_Click(); break;
    case key::del: cmdRemoveTag_Click(); break;
    case key::f7: host_.FocusQueryWindow(); break;
    default: return;
  }
  event.handled = true;
}

void TagsPanel::lsvTags_KeyUp(KeyEvent& event) {
  if (event.keyCode != key::contextMenu) return;
  event.handled = true;
  ShowMenu(&lsvTags_, menuFromCorner, menuFromCorner);
}

void TagsPanel::lsvTags_MouseUp(const MouseEvent& event) {
  if (event.button == MouseButton::Right) ShowMenu(nullptr, 0, 0);
}

void TagsPanel::ShowMenu(Control* at, int x, int y) {
  if (lsvTags_.SelectedIndex() >= 0) frame_.PopupMenu(menuTags_, at, x, y);
}

/// The number of the entry is the form of the tag.
void TagsPanel::mnuTag_Click(int index) {
  const int row = lsvTags_.SelectedIndex();
  if (row >= 0) sqlWindow_.InsertText(MakeTagText(lsvTags_.Row(row).text, index, tagType::named));
}

// --- the value editor ----------------------------------------------------------------------------

bool TagsPanel::EditorOpenOn(const std::string& key) const {
  return EditorOpen() && editedKey_ == key;
}

/// While the editor is open it goes from tag to tag with the user.
void TagsPanel::lsvTags_ItemClick(int row) {
  if (EditorOpen()) OpenEditor(row);
}

void TagsPanel::lsvTags_CellClick(int row, int column, const MouseEvent& event) {
  if (event.button == MouseButton::Left && column == valueColumn) OpenEditor(row);
}

void TagsPanel::lsvTags_GotFocus() {
  if (EditorOpen()) cboTagValue_.SetFocus();
}

/// The editor goes with its tag. Where that is out of sight it closes, with its text as the tag's
/// value, as when the user goes to another tag.
void TagsPanel::lsvTags_Scrolled() {
  if (!EditorOpen()) return;
  const Rect cell = EditedCell();
  if (cell.height > 0) return PlaceEditorOver(cell);
  const bool hadFocus = cboTagValue_.HasFocus();
  CloseEditor(true);
  if (hadFocus) lsvTags_.SetFocus();
}

void TagsPanel::OpenEditor(int row) {
  const std::string key = lsvTags_.Row(row).key;
  if (EditorOpenOn(key)) return;
  CloseEditor(true);
  editedKey_ = key;
  ConfirmTagValueSync();
  PlaceEditor();
  cboTagValue_.SetVisible(true);
  cboTagValue_.SetFocus();
  cboTagValue_.SelectAllText();
}

/// Over the value of its tag, which is brought into sight.
void TagsPanel::PlaceEditor() {
  lsvTags_.SetSelectedIndex(lsvTags_.FindKey(editedKey_));
  PlaceEditorOver(EditedCell());
}

Rect TagsPanel::EditedCell() const {
  return lsvTags_.CellBounds(lsvTags_.FindKey(editedKey_), valueColumn);
}

/// Never lower than the form has it, so that its text is not cut off.
void TagsPanel::PlaceEditorOver(const Rect& cell) {
  const Rect list = lsvTags_.Bounds();
  const int height = std::max(cell.height, editorHeight_);
  const int top = list.top + cell.top - (height - cell.height) / 2;
  cboTagValue_.SetBounds({list.left + cell.left, top, cell.width, height});
}

void TagsPanel::FollowResize() {
  if (EditorOpen()) PlaceEditor();
}

void TagsPanel::CloseEditor(bool commit) {
  if (commit) CommitValue();
  cboTagValue_.SetVisible(false);
}

void TagsPanel::ConfirmTagValueSync() {
  const TagStore::Values& values = store_.ValuesOf(editedKey_);
  cboTagValue_.Clear();
  for (const std::string& value : values) cboTagValue_.AddItem(value);
  cboTagValue_.SetText(values.empty() ? "" : values.back());
}

/// Makes the editor's text the value of its tag. An empty text is no value.
void TagsPanel::CommitValue() {
  const std::string text = cboTagValue_.Text();
  if (!EditorOpen() || text.empty()) return;
  store_.SetCurrent(editedKey_, text);
  const int row = lsvTags_.FindKey(editedKey_);
  ListRow tag = lsvTags_.Row(row);
  tag.subItems = {text};
  lsvTags_.SetRow(row, std::move(tag));
}

/// Enter confirms the value; Esc closes the editor and leaves the value as it was; F7 goes back to
/// the SQL, where a value that was typed counts.
void TagsPanel::cboTagValue_KeyDown(KeyEvent& event) {
  if (event.shift != shiftState::none) return;
  if (event.keyCode == key::enter) {
    CommitValue();
    ConfirmTagValueSync();
    cboTagValue_.SelectAllText();
  } else if (event.keyCode == key::escape) {
    CloseEditor(false);
    lsvTags_.SetFocus();
  } else if (event.keyCode == key::f7) {
    host_.FocusQueryWindow();
  } else {
    return;
  }
  event.handled = true;
}

// --- values for tags -----------------------------------------------------------------------------

std::string TagsPanel::GetTagValue(const std::string& name, bool parenthesised, bool quoted) {
  if (!store_.Has(name)) RaiseAppError("Undefined tag: '" + name + "'");
  CommitTypedValue(TagStore::KeyOf(name));
  const TagStore::Values& values = store_.ValuesOf(name);
  if (values.empty()) RaiseAppError("No value given for tag: '" + name + "'");
  return FormatTagText(values.back(), parenthesised, quoted);
}

void TagsPanel::CommitTypedValue(const std::string& key) {
  if (!EditorOpenOn(key)) return;
  const ListRow& tag = lsvTags_.Row(lsvTags_.FindKey(key));
  if (cboTagValue_.Text() == tag.subItems.front()) return;
  CommitValue();
  ConfirmTagValueSync();
}

}  // namespace tessel
