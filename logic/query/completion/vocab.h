#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "logic/program/Global.h"
#include "logic/query/completion/NameQuoting.h"
#include "logic/text/TextFile.h"

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

  /// How the words of the lists of that name in Tables() and Fields() are written in SQL.
  void SetQuoting(const std::string& list, const NameQuoting& quoting);
  void RemoveQuoting(const std::string& list) { quotings_.erase(list); }
  /// As QuoteIdentifier does where nothing was set.
  [[nodiscard]] const NameQuoting& QuotingOf(std::string_view list) const;
  /// A word of a section as it is put into SQL: as its list, the first that holds it, says.
  [[nodiscard]] std::string InSql(const Section& section, std::string_view word) const;

  /// Makes the sections and reads the vocabulary file, if there is one, into "_Global" of
  /// "_Custom".
  void LoadVocabulary();
  /// Reads a file, in whatever encoding a query file may have, into the list; a missing or
  /// unreadable file leaves the list as it was and is not reported.
  bool ReadWordListFile(WordList& words, const std::string& path) const;
  /// Writes the list, replacing the file or, with `append`, adding to its end. A file that was not
  /// UTF-8 is kept beside it, as it was; one that cannot be read is not replaced. A failure is
  /// shown.
  void WriteWordListFile(const std::string& path, const WordList& words, bool append) const;

  [[nodiscard]] Section& Tables() { return tables_; }
  [[nodiscard]] Section& Fields() { return fields_; }
  [[nodiscard]] Section& Custom() { return custom_; }
  /// The user's own words.
  [[nodiscard]] WordList& GlobalWords();
  [[nodiscard]] const std::string& FilePath() const { return filePath_; }

 private:
  [[nodiscard]] DecodedText ReadForReplacing(const std::string& path) const;

  const Global& global_;
  std::string filePath_;
  Section tables_;
  Section fields_;
  Section custom_;
  std::map<std::string, NameQuoting, std::less<>> quotings_;
};

}  // namespace tessel
