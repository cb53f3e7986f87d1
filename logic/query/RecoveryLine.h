#pragma once

#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/Help.h"
#include "logic/query/RecoveryCopy.h"

namespace tessel {

/// What the recovery of unsaved text asks of the editor.
class RecoveryHost {
 public:
  /// The text as it is now; nothing while it is saved.
  [[nodiscard]] virtual std::optional<UnsavedText> Unsaved() const = 0;
  /// Puts a text into the editor as an unsaved one. False when the user wants to keep the text that
  /// is there.
  virtual bool TakeBack(const UnsavedText& unsaved) = 0;

 protected:
  ~RecoveryHost() = default;
};

/// Keeps a copy of the unsaved text that is at most two seconds old, and offers those of earlier
/// runs on a line above the editor. The line waits: no key that is meant for the editor reaches it,
/// and a copy is only removed once it was taken back or its removal was confirmed.
class RecoveryLine {
 public:
  /// `window` has the line's controls.
  RecoveryLine(const Global& global, Window& window, RecoveryHost& host);

  /// A copy of the changed text follows soon.
  void NoteChange() { timer_.SetEnabled(true); }
  /// Nothing is unsaved any more: the text was saved or discarded on purpose.
  void NoteSaved();
  /// Says something about the text on the line, until it is closed or something else is said.
  void Tell(const std::string& notice);
  /// Writes what a copy is due of, now.
  void KeepNow();

 private:
  void tmrRecovery_Tick();
  void cmdTakeBack_Click();
  void cmdDiscardCopy_Click();
  void RemoveLeft();
  [[nodiscard]] std::string Offer() const;
  void ShowLine();

  const Global& global_;
  RecoveryHost& host_;
  RecoveryCopy copy_;
  Timer& timer_;
  PictureBox& fraRecovery_;
  Label& labRecovery_;
  Button& cmdTakeBack_;
  Button& cmdDiscardCopy_;
  std::string failure_;  ///< The one that is told; a run tells no second one of its copy.
  std::string notice_;   ///< What else was said last.
};

}  // namespace tessel
