// Text on its way from a file: what kind of file it is, and a window that moves over it and turns
// its bytes into UTF-8.

#include "logic/import/reading/TextWindow.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <optional>
#include <utility>

#include "contract/text/ByteOrderMark.h"
#include "contract/text/Utf8.h"

namespace tessel {

namespace {

struct Signature {
  std::string_view bytes;
  const char* kind;
};

/// Beginnings of files that people take for texts.
constexpr std::array<Signature, 12> signatures = {{
    {"PK\x03\x04", "a ZIP archive, as spreadsheets (XLSX, ODS) are"},
    {"\xD0\xCF\x11\xE0", "a document of an older office program (XLS, DOC)"},
    {"\x1F\x8B", "packed by gzip"},
    {"BZh", "packed by bzip2"},
    {"\xFD"
     "7zXZ",
     "packed by xz"},
    {"(\xB5/\xFD", "packed by Zstandard"},
    {"%PDF-", "a PDF document"},
    {"\x89PNG", "a picture (PNG)"},
    {"\xFF\xD8\xFF", "a picture (JPEG)"},
    {"GIF8", "a picture (GIF)"},
    {"\x7F"
     "ELF",
     "a program"},
    {std::string_view("SQLite format 3\0", 16), "a database of SQLite"},
}};

/// The encoding of a text of UTF-16 without a mark: every second byte of most texts is 0.
std::optional<TextEncoding> Utf16Of(std::string_view bytes) {
  constexpr std::size_t looked = 1024;
  const std::string_view head = bytes.substr(0, std::min(looked, bytes.size() / 2 * 2));
  std::array<std::size_t, 2> zeros = {0, 0};
  for (std::size_t i = 0; i < head.size(); ++i)
    if (head[i] == '\0') ++zeros[i % 2];
  const std::size_t most = head.size() / 2;
  if (most < 2) return std::nullopt;
  if (zeros[1] * 10 > most * 6 && zeros[0] == 0) return TextEncoding::Utf16LittleEndian;
  if (zeros[0] * 10 > most * 6 && zeros[1] == 0) return TextEncoding::Utf16BigEndian;
  return std::nullopt;
}

/// Bytes that are no ASCII, as characters of UTF-8 and as others.
bool LooksLikeUtf8(std::string_view text) {
  constexpr std::size_t longest = 4;
  std::size_t characters = 0;
  std::size_t others = 0;
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0 && text.size() < longest) break;  // It may be cut.
    if (length == 0) ++others;
    if (length > 1) ++characters;
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return others == 0 || characters > others;
}

bool IsUtf16(TextEncoding encoding) {
  return encoding == TextEncoding::Utf16LittleEndian || encoding == TextEncoding::Utf16BigEndian;
}

/// How many bytes of a piece of UTF-16 are whole characters.
std::size_t WholeUtf16(std::string_view bytes, bool bigEndian) {
  std::size_t whole = bytes.size() / 2 * 2;
  if (whole < 2) return 0;
  const auto high = static_cast<unsigned char>(bytes[whole - (bigEndian ? 2 : 1)]);
  constexpr unsigned char firstHalf = 0xD8;
  constexpr unsigned char halves = 0xFC;
  if ((high & halves) == firstHalf) whole -= 2;
  return whole;
}

}  // namespace

std::size_t TextReader::Read(std::span<char> buffer) {
  const std::size_t count = std::min(buffer.size(), text_->size() - read_);
  std::memcpy(buffer.data(), text_->data() + read_, count);
  read_ += count;
  return count;
}

FirstLook LookAt(std::string_view bytes) {
  for (const Signature& signature : signatures)
    if (bytes.starts_with(signature.bytes)) return {TextEncoding::Utf8, signature.kind};
  if (bytes.starts_with(byteOrderMark)) return {TextEncoding::Utf8WithMark, {}};
  if (bytes.starts_with(utf16LittleMark)) return {TextEncoding::Utf16LittleEndian, {}};
  if (bytes.starts_with(utf16BigMark)) return {TextEncoding::Utf16BigEndian, {}};
  if (const auto encoding = Utf16Of(bytes)) return {*encoding, {}};
  return {LooksLikeUtf8(bytes) ? TextEncoding::Utf8 : TextEncoding::Windows1252, {}};
}

TextWindow::TextWindow(std::unique_ptr<FileReader> source, TextEncoding encoding, std::size_t piece)
    : source_(std::move(source)), encoding_(encoding), piece_(piece) {}

void TextWindow::ReadMore() {
  const bool first = bytesRead_ == 0;
  const std::size_t rest = filled_ - taken_;
  if (taken_ > 0) std::memmove(buffer_.data(), buffer_.data() + taken_, rest);
  taken_ = 0;
  filled_ = rest;
  if (encoding_ == TextEncoding::Utf8 || encoding_ == TextEncoding::Utf8WithMark) ReadUtf8();
  else ReadOther();
  if (first) DropMark();
}

void TextWindow::ReadUtf8() {
  if (buffer_.size() < filled_ + piece_) buffer_.resize(filled_ + piece_);
  const std::size_t read = source_->Read({buffer_.data() + filled_, piece_});
  filled_ += read;
  bytesRead_ += read;
  ended_ = read == 0;
}

void TextWindow::ReadOther() {
  std::string bytes = std::exchange(cut_, {});
  const std::size_t kept = bytes.size();
  bytes.resize(kept + piece_);
  const std::size_t read = source_->Read({bytes.data() + kept, bytes.size() - kept});
  bytes.resize(kept + read);
  bytesRead_ += read;
  ended_ = read == 0;
  if (IsUtf16(encoding_) && !ended_) {
    const std::size_t whole = WholeUtf16(bytes, encoding_ == TextEncoding::Utf16BigEndian);
    cut_ = bytes.substr(whole);
    bytes.resize(whole);
  }
  const std::string text = DecodePiece(bytes, encoding_);
  buffer_.resize(filled_);
  buffer_ += text;
  filled_ = buffer_.size();
}

/// By now it is one of UTF-8, whatever it was in the file.
void TextWindow::DropMark() { taken_ = BehindMark(std::string_view(buffer_).substr(0, filled_)); }

}  // namespace tessel
