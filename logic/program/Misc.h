#pragma once

#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>

#include "contract/base/Color.h"
#include "contract/base/Files.h"
#include "contract/base/Value.h"
#include "contract/desktop/CommonDialogs.h"
#include "contract/desktop/Desktop.h"

namespace tessel {

/// The texts around and between the pieces of a conversion.
struct PieceFormat {
  std::string separator;
  std::string prefix;
  std::string suffix;
};

/// How FormatValue writes one value.
struct ValueFormat {
  PieceFormat delimiters;   ///< Its prefix and suffix stand around every value that is not null.
  std::string quote;        ///< Around texts, dates and binary values shown as text; may be empty.
  std::string nullText;     ///< Stands for null, alone.
  std::string escapeStyle;  ///< Empty: double the quote; "\": as in C; "&": as in HTML; other:
                            ///< double that text.
  bool hexBinary = false;   ///< Binary values as "0x" and hexadecimal digits.
};

/// A parsed connection string: upper-case key to value.
using ConnectionPairs = std::map<std::string, std::string, std::less<>>;

/// `text` as an SQL string literal: quotes around it, quotes inside doubled, nothing else changed.
[[nodiscard]] std::string SqlQuote(std::string_view text);
/// `name` in "[" and "]" when it holds a space or begins with a digit, else as it is.
[[nodiscard]] std::string QuoteIdentifier(std::string_view name);
/// Whether a byte belongs to the class [A-Za-z0-9_#@$].
[[nodiscard]] bool IsIdentifierChar(char c);
/// The bytes of a text's first character, which it has; a byte that is no UTF-8 counts as one.
[[nodiscard]] std::string_view FirstCharacter(std::string_view text);
/// `text` in upper case, by character.
[[nodiscard]] std::string UpperCase(std::string_view text);

/// An abbreviation of a name: the upper-case first characters of its words. With `splitWords` a
/// word also starts after "_", a space or a control character; with `keepCapitals` ASCII capitals
/// inside a word are kept.
[[nodiscard]] std::string MakeInitials(std::string_view name, bool keepCapitals, bool splitWords);
/// Whether MakeInitials gives a text that begins with `wanted`; looks no further than needed.
[[nodiscard]] bool InitialsBeginWith(std::string_view name, std::string_view wanted,
                                     bool keepCapitals, bool splitWords);

/// Two upper-case hexadecimal digits.
[[nodiscard]] std::string ByteToHex(unsigned char byte);

/// One field value as text. Only texts, moments and binary values shown as text are escaped and
/// quoted.
[[nodiscard]] std::string FormatValue(const ValueView& value, const ValueFormat& format);
/// Appends several values in this form, the delimiters' separator between them.
void AppendFormattedValues(std::string& out, std::span<const ValueView> values,
                           const ValueFormat& format);

/// A menu caption of plain text: "&" would mark a mnemonic.
[[nodiscard]] std::string PlainCaption(std::string_view text);

/// Splits at every ";" and each piece at its first "="; keys are trimmed and upper-cased, values
/// kept as they are. Empty keys are skipped and the first of two equal keys wins.
[[nodiscard]] ConnectionPairs ParseConnectionString(std::string_view connectionString);
/// The value of the first of `names` that is a key; empty if none is.
[[nodiscard]] std::string GetConnectionStringValue(const ConnectionPairs& pairs,
                                                   std::initializer_list<std::string_view> names);
/// Appends key=value, behind a ";" when something stands before it; nothing for an empty value.
void AppendConnectionStringPair(std::string& connectionString, std::string_view key,
                                std::string_view value);

/// Cuts `text` just before the first `delimiter`, if there is one.
void CutAtFirst(std::string& text, std::string_view delimiter);
/// Keeps what follows the first character of the last `delimiter`, if there is one.
void KeepAfterLast(std::string& text, std::string_view delimiter);

[[nodiscard]] bool FileExists(const Files& files, const std::string& path);
[[nodiscard]] bool IsKeyDown(const Desktop& desktop, int keyCode);
/// Button face for a locked field, window background for one that can be edited.
[[nodiscard]] Color EditableBackColor(bool locked);

/// Sets the folder in which a file dialog opens: that of its file name when it has one, else the
/// current folder.
void PrepareFileDialog(FileDialog& dialog, const Files& files);
/// Asks for an existing file; false when the user cancelled.
[[nodiscard]] bool ShowOpenFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir);
/// Asks for a file to write, with a question before one is replaced; false when the user cancelled.
[[nodiscard]] bool ShowSaveFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir);

}  // namespace tessel
