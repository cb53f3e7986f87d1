#include "logic/schema/structure/StructureText.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr std::size_t mostTables = 12;  ///< That a tool tip names.

const FieldFacts* FindField(const Structure& structure, std::string_view table,
                            std::string_view field) {
  const TableFacts* facts = structure.FindTable(table);
  return facts == nullptr ? nullptr : facts->FindField(field);
}

std::string TypeText(const FieldFacts& facts) {
  const std::string separator = facts.type.empty() || !facts.notNull ? "" : ", ";
  return facts.type + separator + (facts.notNull ? "NOT NULL" : "");
}

std::string KeyPlaceText(const Structure& structure, std::string_view table, int place) {
  const std::size_t parts = structure.FindTable(table)->KeyFields().size();
  if (parts < 2) return "Primary key";
  return "Primary key, part " + std::to_string(place) + " of " + std::to_string(parts);
}

void AppendLine(std::string& text, const std::string& line) {
  if (!line.empty()) text += (text.empty() ? "" : "\n") + line;
}

/// The names, each once, and no more of them than a tool tip holds.
std::string Some(std::vector<std::string> names) {
  std::ranges::sort(names);
  names.erase(std::ranges::unique(names).begin(), names.end());
  const std::size_t more = names.size() > mostTables ? names.size() - mostTables : 0;
  names.resize(names.size() - more);
  return Listed(names) + (more == 0 ? "" : " and " + std::to_string(more) + " more");
}

std::string Sentence(const char* words, const std::vector<std::string>& names) {
  return names.empty() ? "" : words + Some(names);
}

}  // namespace

std::string FieldDetail(const Structure& structure, std::string_view table,
                        std::string_view field) {
  const FieldFacts* facts = FindField(structure, table, field);
  if (facts == nullptr) return {};
  std::string detail = TypeText(*facts);
  if (facts->keyPlace > 0) detail += detail.empty() ? "key" : ", key";
  for (const ForeignKey* key : structure.KeysOf(table, field))
    detail += " \xE2\x86\x92 " + key->toTable;
  return detail;
}

std::string FieldToolTip(const Structure& structure, std::string_view table,
                         std::string_view field) {
  const FieldFacts* facts = FindField(structure, table, field);
  if (facts == nullptr) return {};
  std::string text = TypeText(*facts);
  if (facts->keyPlace > 0) AppendLine(text, KeyPlaceText(structure, table, facts->keyPlace));
  for (const ForeignKey* key : structure.KeysOf(table, field))
    AppendLine(text,
               "Refers to " + key->toTable + " (" + Listed(key->toFields) + ") by " + key->name);
  return text;
}

std::string TableToolTip(const Structure& structure, std::string_view table) {
  const TableFacts* facts = structure.FindTable(table);
  if (facts == nullptr) return {};
  std::vector<std::string> to;
  std::vector<std::string> from;
  for (const ForeignKey& key : structure.ForeignKeys()) {
    if (key.table == table) to.push_back(key.toTable);
    if (key.toTable == table) from.push_back(key.table);
  }
  std::string text;
  const std::vector<std::string> key = facts->KeyFields();
  AppendLine(text, key.empty() ? "No primary key" : "Primary key: " + Listed(key));
  AppendLine(text, Sentence("Refers to ", to));
  AppendLine(text, Sentence("Referred to by ", from));
  return text;
}

std::string IndexDetail(const IndexFacts& index) {
  return std::string(index.unique ? "unique " : "") + "(" + Listed(index.fields) + ")";
}

std::string IndexToolTip(const IndexFacts& index) {
  return std::string(index.unique ? "Unique index" : "Index") + " of " + Listed(index.fields);
}

std::string KeyCondition(const ForeignKey& key) {
  std::string text;
  for (std::size_t i = 0; i < key.fields.size(); ++i)
    text += (i == 0 ? "" : " AND ") + key.table + "." + key.fields[i] + " = " + key.toTable + "." +
            key.toFields[i];
  return text;
}

}  // namespace tessel
