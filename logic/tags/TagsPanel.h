#pragma once

#include <string>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/ListView.h"
#include "logic/program/Help.h"
#include "logic/tags/TagStore.h"
#include "logic/tags/TagsHost.h"
#include "logic/text/SqlTarget.h"

namespace tessel {

/// The tags panel of the frame's sidebar: the list of named tags, and an editor that opens over the
/// value of one of them and offers the values it had before.
class TagsPanel {
 public:
  /// What it works with; all outlive it.
  struct Surroundings {
    const Global& global;
    Window& frame;
    TagStore& store;
    SqlTarget& sqlWindow;
    TagsHost& host;
  };

  explicit TagsPanel(const Surroundings& around);

  /// What a named tag stands for; a value typed but not yet confirmed counts. Raises
  /// Error(application) when there is no such tag or it has no value.
  [[nodiscard]] std::string GetTagValue(const std::string& name, bool parenthesised, bool quoted);

  /// Fills the value editor with the values of its tag; the current one is its text.
  void ConfirmTagValueSync();
  /// The panel has another size: an open value editor goes where its cell is now.
  void FollowResize();

 private:
  void WireControls();
  void WireMenu();
  void cmdAddTag_Click();
  void cmdRemoveTag_Click();
  void lsvTags_AfterLabelEdit(int row, const std::string& name, bool& keepOld);
  void lsvTags_ItemClick(int row);
  void lsvTags_CellClick(int row, int column, const MouseEvent& event);
  void lsvTags_GotFocus();
  void lsvTags_Scrolled();
  void lsvTags_KeyDown(KeyEvent& event);
  void lsvTags_KeyUp(KeyEvent& event);
  void lsvTags_MouseUp(const MouseEvent& event);
  void cboTagValue_KeyDown(KeyEvent& event);
  void mnuTag_Click(int index);

  [[nodiscard]] std::string FreeName() const;
  [[nodiscard]] bool MayRemove(const ListRow& tag) const;
  void RenameTag(int row, const std::string& name);
  void EditValue();
  void StartRename();
  void ShowMenu(Control* at, int x, int y);
  void Notice(const std::string& text) const;

  [[nodiscard]] bool EditorOpen() const { return cboTagValue_.Visible(); }
  [[nodiscard]] bool EditorOpenOn(const std::string& key) const;
  void OpenEditor(int row);
  void PlaceEditor();
  void PlaceEditorOver(const Rect& cell);
  [[nodiscard]] Rect EditedCell() const;
  void CloseEditor(bool commit);
  void CommitValue();
  void CommitTypedValue(const std::string& key);

  Help help_;
  Window& frame_;
  TagStore& store_;
  SqlTarget& sqlWindow_;
  TagsHost& host_;
  ListView& lsvTags_;
  ComboBox& cboTagValue_;
  MenuItem& menuTags_;
  int editorHeight_;       ///< In twips, as the form has it.
  std::string editedKey_;  ///< Of the tag that the open value editor stands on.
};

}  // namespace tessel
