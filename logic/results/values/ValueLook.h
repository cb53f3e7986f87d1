#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "contract/base/Value.h"
#include "contract/desktop/controls/EditorBox.h"
#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "contract/desktop/controls/values/ImageBox.h"
#include "logic/program/Help.h"
#include "logic/results/values/ByteSearch.h"
#include "logic/text/TextZoom.h"
#include "logic/text/indent/IndentSlices.h"

namespace tessel {

/// Which value is looked into.
struct LookedAt {
  /// Gives the value as it is now; it raises what the recordset raises once that is gone.
  std::function<ValueView()> value = {};
  std::string name = {};  ///< What the user calls it.
  /// The same for the same cell: places in its bytes are then kept.
  std::string cell = {};
};

/// The part of a window that shows one value: as bytes, as a picture, as text, or as indented JSON
/// or XML, whichever the user chose or it seems to be. It changes nothing, and asks for the value
/// whenever it needs it.
class ValueLook {
 public:
  /// The window has the controls of the form, and outlives it.
  ValueLook(const Global& global, Window& window);

  /// Shows a value, or the one shown before as it is by now.
  void Show(LookedAt looked);
  /// Shows nothing and lets go of the value.
  void Clear();

  /// Keys of its controls: finding, going somewhere, copying, zooming. True when one was taken.
  bool TakeKey(const KeyEvent& event);
  [[nodiscard]] bool HasFocus() const;
  /// Gives the keyboard to what shows the value.
  void SetFocus();

 private:
  /// In the order of the list.
  enum class Look { Automatic, Text, Indented, Hex, Picture };

  [[nodiscard]] ValueView ReadValue() const;
  /// The value as bytes: those of its text where it is none of bytes.
  [[nodiscard]] std::string_view ReadBytes() const;
  [[nodiscard]] bool IsAsBefore(std::string_view bytes);
  void Update();
  [[nodiscard]] Look Chosen(const ValueView& value, std::string_view bytes);
  [[nodiscard]] Look AutomaticLook(const ValueView& value, std::string_view bytes) const;
  void ShowHex();
  void ShowText(std::string_view bytes);
  void ShowIndented(std::string_view bytes);
  void PutIndented(std::string_view bytes, const IndentedText& indented);
  void ShowPicture(std::string_view bytes);
  void ShowOnly(const Control& shown);
  void Describe(const ValueView& value, std::string_view bytes);
  void SayAll();
  [[nodiscard]] std::string PlaceText() const;
  [[nodiscard]] std::string PictureText() const;

  bool TakeHexKey(const KeyEvent& event);
  void Find();
  void GoTo();
  void CopyBytes();

  const Global& global_;
  Help help_;
  Label& lblValue_;
  ComboBox& cboValueAs_;
  HexBox& hexValue_;
  ImageBox& imgValue_;
  EditorBox& txtValue_;
  TextZoom zoom_;
  ByteSearch search_;
  IndentSlices indenting_;
  std::string indented_;  ///< The text that is under way there; its record may go meanwhile.
  LookedAt looked_;
  mutable std::string ownText_;  ///< Of a value that is neither bytes nor text.
  std::string print_;            ///< What tells the value shown from another one.
  std::string what_;             ///< Said of the value: name, kind, length.
  std::string fault_;            ///< Why it is not shown as chosen.
  std::string found_;            ///< What came of a search.
  std::string wanted_;           ///< As it was typed to be found.
};

}  // namespace tessel
