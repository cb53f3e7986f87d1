#include "logic/query/completion/vocab.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "logic/program/Help.h"

namespace tessel {

namespace {

constexpr std::string_view globalWordsName = "_Global";

/// A name for a copy of a file: with ".old", or the first number behind it that is free.
std::string FreeName(const Files& files, const std::string& path) {
  const std::string base = path + ".old";
  std::string name = base;
  for (int number = 2; files.FileExists(name); ++number) name = base + std::to_string(number);
  return name;
}

std::string_view WithoutLeadingSpaces(std::string_view text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

}  // namespace

void ParseWordList(WordList& words, std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (line.ends_with('\r')) line.remove_suffix(1);
    line = WithoutLeadingSpaces(line);
    if (!line.empty()) words.emplace_back(line);
  }
}

void WordListToText(std::string& text, const WordList& words) {
  for (const std::string& word : words) text.append(word).append("\r\n");
}

void Vocabulary::LoadVocabulary() {
  tables_.clear();
  fields_.clear();
  custom_ = {{std::string(globalWordsName), {}}};
  filePath_ = global_.BesideExecutable("Tessel.vocab.txt");
  ReadWordListFile(GlobalWords(), filePath_);
}

WordList& Vocabulary::ListNamed(Section& section, std::string_view name) {
  const auto found = std::ranges::find(section, name, &Section::value_type::first);
  if (found != section.end()) return found->second;
  return section.emplace_back(std::string(name), WordList{}).second;
}

void Vocabulary::RemoveList(Section& section, std::string_view name) {
  std::erase_if(section, [&](const auto& list) { return list.first == name; });
}

void Vocabulary::SetQuoting(const std::string& list, const NameQuoting& quoting) {
  quotings_.insert_or_assign(list, quoting);
}

const NameQuoting& Vocabulary::QuotingOf(std::string_view list) const {
  static const NameQuoting ordinary;
  const auto found = quotings_.find(list);
  return found == quotings_.end() ? ordinary : found->second;
}

std::string Vocabulary::InSql(const Section& section, std::string_view word) const {
  const auto holdsWord = [&](const Section::value_type& list) {
    return std::ranges::find(list.second, word) != list.second.end();
  };
  const auto list = std::ranges::find_if(section, holdsWord);
  if (list == section.end() || &section == &custom_) return std::string(word);
  const NameQuoting& quoting = QuotingOf(list->first);
  return &section == &tables_ ? quoting.Table(word) : quoting.Name(word);
}

WordList& Vocabulary::GlobalWords() { return ListNamed(custom_, globalWordsName); }

bool Vocabulary::ReadWordListFile(WordList& words, const std::string& path) const {
  try {
    if (!global_.TheFiles().FileExists(path)) return false;
    ParseWordList(words, DecodeText(global_.TheFiles().ReadWhole(path)).text);
    return true;
  } catch (const Error&) {
    return false;
  }
}

/// What stands in a file that is to be replaced. Bytes that may have been read as others than were
/// meant are put into a file of their own first.
DecodedText Vocabulary::ReadForReplacing(const std::string& path) const {
  Files& files = global_.TheFiles();
  if (!files.FileExists(path)) return {};
  std::string bytes = files.ReadWhole(path);
  DecodedText decoded = DecodeText(bytes);
  if (ChangesEncoding(decoded.encoding)) files.ReplaceWhole(FreeName(files, path), bytes, false);
  return decoded;
}

void Vocabulary::WriteWordListFile(const std::string& path, const WordList& words,
                                   bool append) const {
  try {
    DecodedText file = ReadForReplacing(path);
    if (!append) file.text.clear();
    WordListToText(file.text, words);
    global_.TheFiles().ReplaceWhole(path, EncodeText(std::move(file.text), file.encoding), false);
  } catch (const Error& error) {
    Help(global_).Show("Error saving vocabulary: " + error.Description(), MessageIcon::Critical);
  }
}

}  // namespace tessel
