#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "contract/desktop/controls/TextBox.h"
#include "logic/program/Help.h"
#include "logic/text/TextFile.h"

namespace tessel {

/// Twips of the right margin with which lines in effect never wrap.
inline constexpr int noWrapMargin = 960000;

/// Where a text comes from.
struct TextOrigin {
  std::string path;   ///< Its file; empty for a new text.
  std::string stamp;  ///< StampOf what the file held when it was read or written last.
  TextEncoding encoding = TextEncoding::Utf8;
};

/// How the file of a text stands against what was read or written last.
enum class FileState { Same, Changed, Gone };

/// The file behaviour that every text window shares: reading whole files, writing them whole,
/// wrapping lines.
class TextDocument {
 public:
  TextDocument(const Global& global, RichTextBox& box) : global_(global), box_(box) {}

  /// Reads a whole file into the box. A file that cannot be read leaves the text as it was and
  /// shows why; one that is not UTF-8 is read all the same, and a notice says so. True when the
  /// text was replaced.
  bool Open(const std::string& path) { return Read(path, false); }
  /// Reads the file of this text again, as an edit that can be undone.
  bool Reload() { return Read(origin_.path, true); }

  /// Writes the whole text, in place of the file or not at all. False on failure, with `reason` set
  /// when given.
  bool Write(const std::string& path, std::string* reason = nullptr) const;
  /// Writes, and shows why when it fails; the file is then that of this text.
  bool Save(const std::string& path);

  /// A new text: it will be written as plain UTF-8.
  void Forget() { origin_ = {}; }

  [[nodiscard]] const TextOrigin& Origin() const { return origin_; }
  void SetOrigin(TextOrigin origin) { origin_ = std::move(origin); }
  /// What another program has done to the text's file meanwhile. A file that holds this very text
  /// is the same; one that cannot be read has changed.
  [[nodiscard]] FileState CompareWithFile() const;

  /// Writes that text in place of the box's, which is only another look of it.
  void WriteInstead(std::function<std::string()> text) { text_ = std::move(text); }

  void SetWordWrap(bool wrap) { box_.SetRightMargin(wrap ? 0 : noWrapMargin); }

 private:
  bool Read(const std::string& path, bool undoable);
  void Replace(const std::string& text, bool undoable);
  [[nodiscard]] std::string Bytes() const {
    return EncodeText(text_ ? text_() : box_.Text(), origin_.encoding);
  }

  const Global& global_;
  RichTextBox& box_;
  TextOrigin origin_;
  std::function<std::string()> text_;  ///< What is written; empty: what the box holds.
};

}  // namespace tessel
