#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/TextBox.h"
#include "logic/query/completion/Completion.h"
#include "logic/query/completion/vocab.h"

namespace tessel {

/// The query window's completion: the keys that start it in the text, and the list that offers the
/// words at the caret. While the list is open it has the focus; what is typed goes into the text
/// and narrows the list.
class CompletionList {
 public:
  /// Wires the keys of `txtQuery` and the events of `lstOptions`. Both arguments outlive it.
  CompletionList(Window& window, Vocabulary& vocabulary);

 private:
  void txtQuery_KeyDown(KeyEvent& event);
  void lstOptions_KeyDown(KeyEvent& event);
  bool lstOptions_KeyPress(const std::string& text);
  void lstOptions_DblClick() { AcceptSelected(); }
  void lstOptions_LostFocus() { lstOptions_.SetVisible(false); }

  [[nodiscard]] bool TakeCompletionKey(const KeyEvent& event);
  [[nodiscard]] bool TakeInsertionKey(const KeyEvent& event);
  [[nodiscard]] bool TakeListKey(int keyCode);
  [[nodiscard]] Vocabulary::Section* SectionOf(int keyCode);
  void QuoteSelection();

  void Complete(Vocabulary::Section& section, CompletionMode mode);
  [[nodiscard]] TextLines Search();
  void Show(TextLines found);
  void Place();
  void Narrow();
  void Widen();
  void Move(int rows);
  void AcceptSelected();
  void Accept(std::string_view word);
  void Close();

  RichTextBox& txtQuery_;
  ListBox& lstOptions_;
  Vocabulary& vocabulary_;
  Vocabulary::Section* section_ = nullptr;  ///< Searched last.
  CompletionMode mode_;
  std::size_t typedLength_ = 0;  ///< Bytes of the typed word before the caret.
};

}  // namespace tessel
