#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Lines of text, held as one: hundreds of thousands are made and let go without delay.
class TextLines {
 public:
  TextLines() = default;
  explicit TextLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) Add(line);
  }

  /// Room for so many lines of so many bytes together.
  void Reserve(std::size_t lines, std::size_t bytes) {
    ends_.reserve(lines);
    text_.reserve(bytes);
  }
  void Add(std::string_view line) {
    text_ += line;
    ends_.push_back(text_.size());
  }

  [[nodiscard]] std::size_t Size() const { return ends_.size(); }
  /// Valid until the lines change.
  [[nodiscard]] std::string_view operator[](std::size_t line) const {
    return std::string_view(text_).substr(StartOf(line), ends_[line] - StartOf(line));
  }

 private:
  [[nodiscard]] std::size_t StartOf(std::size_t line) const {
    return line == 0 ? 0 : ends_[line - 1];
  }

  std::string text_;
  std::vector<std::size_t> ends_;  ///< Of each line, behind its last byte.
};

}  // namespace tessel
