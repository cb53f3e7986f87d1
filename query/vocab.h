#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "app/Global.h"

namespace tessel {

/// Words in the order in which they were added; duplicates allowed.
using WordList = std::vector<std::string>;

/// Adds the non-empty pieces of `text` between line ends (CR LF or LF), each without its leading
/// spaces.
void ParseWordList(WordList& words, std::string_view text);
/// Appends each word and CR LF.
void WordListToText(std::string& text, const WordList& words);

/// The words that the query window can complete, in sections of named word lists.
class Vocabulary {
 public:
  /// A section: word lists by name, in the order in which they were added.
  using Section = std::vector<std::pair<std::string, WordList>>;

  explicit Vocabulary(const Global& global) : global_(global) {}

  /// The word list of that name, added at the section's end when there is none. Valid until the
  /// section changes.
  [[nodiscard]] static WordList& ListNamed(Section& section, std::string_view name);
  /// A list that is not there is no error.
  static void RemoveList(Section& section, std::string_view name);

  /// Makes the sections and reads the vocabulary file, if there is one, into "_Global" of
  /// "_Custom".
  void LoadVocabulary();
  /// Reads a file into the list; a missing or unreadable file leaves the list as it was and is not
  /// reported.
  bool ReadWordListFile(WordList& words, const std::string& path) const;
  /// Writes the list, replacing the file or, with `append`, adding to its end. A failure is shown.
  void WriteWordListFile(const std::string& path, const WordList& words, bool append) const;

  [[nodiscard]] Section& Tables() { return tables_; }
  [[nodiscard]] Section& Fields() { return fields_; }
  [[nodiscard]] Section& Custom() { return custom_; }
  /// The user's own words.
  [[nodiscard]] WordList& GlobalWords();
  [[nodiscard]] const std::string& FilePath() const { return filePath_; }

 private:
  const Global& global_;
  std::string filePath_;
  Section tables_;
  Section fields_;
  Section custom_;
};

}  // namespace tessel
