#pragma once

#include <string>
#include <string_view>

namespace tessel {

/// How the bytes of a text file were read.
enum class TextEncoding { Utf8, Utf8WithMark, Utf16LittleEndian, Utf16BigEndian, Windows1252 };

struct DecodedText {
  std::string text;  ///< UTF-8; line ends and NUL characters as they stood.
  TextEncoding encoding = TextEncoding::Utf8;
};

/// Reads bytes as text: by a byte-order mark when there is one, else as UTF-8, else as
/// Windows-1252.
[[nodiscard]] DecodedText DecodeText(std::string bytes);

/// Reads a piece of a text whose encoding is known and that ends with a whole character. A mark in
/// it stays a character. Half of a character of UTF-16 becomes the three bytes that it would have
/// (ED A0 80 to ED BF BF), which are no UTF-8, so that who reads the text can tell of it.
[[nodiscard]] std::string DecodePiece(std::string_view bytes, TextEncoding encoding);

/// The bytes that a file of that text gets: UTF-8, with a mark in front when it was read with one.
[[nodiscard]] std::string EncodeText(std::string text, TextEncoding encoding);

/// What tells the bytes of a file from other bytes: their number and a sum over them.
[[nodiscard]] std::string StampOf(std::string_view bytes);

/// Whether saving would change how the file is encoded.
[[nodiscard]] bool ChangesEncoding(TextEncoding encoding);
/// The name of an encoding for a message.
[[nodiscard]] std::string_view EncodingName(TextEncoding encoding);

}  // namespace tessel
