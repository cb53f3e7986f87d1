#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// Lines of text, held as one: hundreds of thousands are made and let go without delay, where as
/// many texts of their own would each take memory. Lists of words to choose from use it: they are
/// handed to ListBox::SetLines whole. Numbers of lines are 0-based. A line may hold any bytes, line
/// ends too: the lengths tell where it ends. No function checks the numbers it is given. No
/// locking: one thread at a time. A copy takes all the text along; lines are handed on by moving
/// them.
class TextLines {
 public:
  /// No lines, and no memory taken.
  TextLines() = default;
  /// Copies the lines, in their order. For few; many are better added one by one, without a text of
  /// its own for each.
  explicit TextLines(const std::vector<std::string>& lines) {
    for (const std::string& line : lines) Add(line);
  }

  /// Room for so many lines of so many bytes together, counted from the first line. It only saves
  /// time: more may be added, and fewer cost the room until all of them go. Lines that are there
  /// stay.
  void Reserve(std::size_t lines, std::size_t bytes) {
    ends_.reserve(lines);
    text_.reserve(bytes);
  }
  /// Copies a line to the end, an empty one too, where it gets the number Size() had. `line` must
  /// not point into these lines.
  void Add(std::string_view line) {
    text_ += line;
    ends_.push_back(text_.size());
  }

  /// How many lines there are, empty ones counted; not bytes.
  [[nodiscard]] std::size_t Size() const { return ends_.size(); }
  /// A line below Size(), as it was added, without a line end unless one was added with it. Valid
  /// until the lines change, or are moved from. Takes the same time for every line.
  [[nodiscard]] std::string_view operator[](std::size_t line) const {
    return std::string_view(text_).substr(StartOf(line), ends_[line] - StartOf(line));
  }

 private:
  // Lines are not divided by a sign, since they may hold any. A line costs its bytes and one
  // number. Both grow as vectors do, so what was looked at is lost when a line is added.
  /// The byte where a line begins: behind the one before it, so an empty line begins where it ends.
  [[nodiscard]] std::size_t StartOf(std::size_t line) const {
    return line == 0 ? 0 : ends_[line - 1];
  }

  std::string text_;               ///< All lines, one behind another without a sign between them.
  std::vector<std::size_t> ends_;  ///< Of each line, behind its last byte.
};

}  // namespace tessel
