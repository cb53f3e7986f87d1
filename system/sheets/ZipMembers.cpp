#include "system/sheets/ZipMembers.h"

#include <algorithm>
#include <cstddef>
#include <fstream>

namespace tessel {

namespace {

// Where what we look for stands in the two records of the format, and how long they are.
constexpr std::string_view endMark("PK\5\6");
constexpr std::size_t endLength = 22;
constexpr std::size_t directorySizeAt = 12;
constexpr std::size_t directoryPlaceAt = 16;
constexpr std::string_view entryMark("PK\1\2");
constexpr std::size_t entryLength = 46;
constexpr std::size_t unpackedSizeAt = 24;
constexpr std::size_t nameLengthAt = 28;
constexpr std::size_t extraLengthAt = 30;
constexpr std::size_t commentLengthAt = 32;

/// A number of `bytes` bytes, the lowest first; the text is long enough.
std::uint64_t NumberAt(std::string_view text, std::size_t at, std::size_t bytes) {
  std::uint64_t number = 0;
  for (std::size_t i = bytes; i > 0; --i)
    number = number << 8U | static_cast<unsigned char>(text[at + i - 1]);
  return number;
}

std::string ReadAt(std::ifstream& file, std::uint64_t place, std::uint64_t length) {
  std::string text(length, '\0');
  file.seekg(static_cast<std::streamoff>(place));
  file.read(text.data(), static_cast<std::streamsize>(length));
  text.resize(static_cast<std::size_t>(file.gcount()));
  return text;
}

/// The directory of the file, whose end has no comment behind it; empty when there is none.
std::string DirectoryOf(std::ifstream& file) {
  file.seekg(0, std::ios::end);
  const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
  if (size < endLength) return {};
  const std::string end = ReadAt(file, size - endLength, endLength);
  if (!end.starts_with(endMark)) return {};
  const std::uint64_t length = NumberAt(end, directorySizeAt, 4);
  return length > size ? std::string() : ReadAt(file, NumberAt(end, directoryPlaceAt, 4), length);
}

}  // namespace

std::optional<std::uint64_t> ZipMemberSize(const std::string& zip, std::string_view member) {
  std::ifstream file(zip, std::ios::binary);
  const std::string directory = DirectoryOf(file);
  std::string_view rest = directory;
  while (rest.size() >= entryLength && rest.starts_with(entryMark)) {
    const std::size_t nameLength = NumberAt(rest, nameLengthAt, 2);
    if (rest.substr(entryLength, nameLength) == member) return NumberAt(rest, unpackedSizeAt, 4);
    const std::size_t length = entryLength + nameLength + NumberAt(rest, extraLengthAt, 2) +
                               NumberAt(rest, commentLengthAt, 2);
    rest.remove_prefix(std::min(length, rest.size()));
  }
  return std::nullopt;
}

}  // namespace tessel
