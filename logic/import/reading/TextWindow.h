#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "contract/system/FileStreams.h"
#include "logic/text/TextFile.h"

namespace tessel {

/// A text that is held in memory, read as a file is.
class TextReader final : public FileReader {
 public:
  explicit TextReader(std::shared_ptr<const std::string> text) : text_(std::move(text)) {}

  [[nodiscard]] std::uint64_t Size() const override { return text_->size(); }
  [[nodiscard]] std::size_t Read(std::span<char> buffer) override;

 private:
  std::shared_ptr<const std::string> text_;
  std::size_t read_ = 0;
};

/// What the first bytes of a file say of it.
struct FirstLook {
  TextEncoding encoding = TextEncoding::Utf8;
  std::string kind;  ///< "a ZIP archive...": it is no text at all. Empty: it may be one.
};
/// Looks at the beginning of a file. A text that has some characters of UTF-8 and some bytes that
/// are none is one of UTF-8 that is broken.
[[nodiscard]] FirstLook LookAt(std::string_view bytes);

/// A piece of a text in UTF-8 that moves on over a file, in memory that does not grow with it. What
/// stands in it may be changed in its place.
class TextWindow {
 public:
  /// Reads `piece` bytes at once. A byte-order mark is left out.
  TextWindow(std::unique_ptr<FileReader> source, TextEncoding encoding, std::size_t piece);

  /// What was read and not yet taken.
  [[nodiscard]] std::span<char> Text() { return {buffer_.data() + taken_, filled_ - taken_}; }
  /// Nothing follows what is in the window.
  [[nodiscard]] bool Ended() const { return ended_; }
  void Take(std::size_t bytes) { taken_ += bytes; }
  /// Reads more; what was taken is gone then, and the rest stands at another place.
  void ReadMore();

  [[nodiscard]] std::uint64_t BytesRead() const { return bytesRead_; }
  [[nodiscard]] std::uint64_t SourceSize() const { return source_->Size(); }

 private:
  void ReadUtf8();
  void ReadOther();
  void DropMark();

  std::unique_ptr<FileReader> source_;
  TextEncoding encoding_;
  std::size_t piece_;
  std::string buffer_;
  std::size_t taken_ = 0;
  std::size_t filled_ = 0;
  std::string cut_;  ///< Bytes of a character that goes on in the next piece; not of UTF-8.
  std::uint64_t bytesRead_ = 0;
  bool ended_ = false;
};

}  // namespace tessel
