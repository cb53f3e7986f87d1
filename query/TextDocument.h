#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "app/Help.h"
#include "platform/TextBox.h"
#include "query/TextFile.h"

namespace tessel {

/// Twips of the right margin with which lines in effect never wrap.
inline constexpr int noWrapMargin = 960000;

/// The file behaviour that every text window shares: reading whole files, writing them whole,
/// wrapping lines.
class TextDocument {
 public:
  TextDocument(const Global& global, RichTextBox& box) : global_(global), box_(box) {}

  /// Reads a whole file into the box. A file that cannot be read leaves the text as it was and
  /// shows why; one that is not UTF-8 is read all the same, and a notice says so. True when the
  /// text was replaced.
  bool Open(const std::string& path);

  /// Writes the whole text, in place of the file or not at all. False on failure, with `reason` set
  /// when given.
  bool Write(const std::string& path, std::string* reason = nullptr) const;
  /// Writes, and shows why when it fails.
  bool Save(const std::string& path) const;

  /// A new text: it will be written as plain UTF-8.
  void Forget() { encoding_ = TextEncoding::Utf8; }

  void SetWordWrap(bool wrap) { box_.SetRightMargin(wrap ? 0 : noWrapMargin); }

 private:
  const Global& global_;
  RichTextBox& box_;
  TextEncoding encoding_ = TextEncoding::Utf8;
};

}  // namespace tessel
