#include "query/vocab.h"

#include <algorithm>

#include "app/Help.h"
#include "platform/Error.h"
#include "query/Misc.h"

namespace tessel {

namespace {

constexpr std::string_view globalWordsName = "_Global";

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

WordList& Vocabulary::GlobalWords() { return ListNamed(custom_, globalWordsName); }

bool Vocabulary::ReadWordListFile(WordList& words, const std::string& path) const {
  try {
    if (!FileExists(global_.TheFiles(), path)) return false;
    ParseWordList(words, global_.TheFiles().ReadWhole(path));
    return true;
  } catch (const Error&) {
    return false;
  }
}

void Vocabulary::WriteWordListFile(const std::string& path, const WordList& words,
                                   bool append) const {
  try {
    Files& files = global_.TheFiles();
    std::string text = append && FileExists(files, path) ? files.ReadWhole(path) : std::string();
    WordListToText(text, words);
    files.ReplaceWhole(path, text, false);
  } catch (const Error& error) {
    Help(global_).Show("Error saving vocabulary: " + error.Description(), MessageIcon::Critical);
  }
}

}  // namespace tessel
