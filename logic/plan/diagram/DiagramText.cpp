#include "logic/plan/diagram/DiagramText.h"

#include <algorithm>
#include <map>
#include <set>
#include <vector>

namespace tessel {

namespace {

constexpr std::size_t mostTables = 300;  ///< That are drawn without a key.
constexpr std::size_t mostFields = 14;   ///< Of a table.

/// Behind each text, since dot may take its letters for narrower than they are drawn.
constexpr const char* spare = "&#160;&#160;";

/// Text of a label, which is markup to dot.
std::string Escaped(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '&') escaped += "&amp;";
    else if (c == '<') escaped += "&lt;";
    else if (c == '>') escaped += "&gt;";
    else if (c == '"') escaped += "&quot;";
    else if (static_cast<unsigned char>(c) < ' ') escaped += ' ';
    else escaped += c;
  }
  return escaped;
}

/// Names every table and field by a number: what a name holds is nothing to dot.
class Writer {
 public:
  explicit Writer(const Structure& structure) : structure_(structure) {}

  DiagramText Write() {
    ChooseTables();
    out_.text = "digraph tables {\n"
                "rankdir=LR; bgcolor=\"transparent\"; nodesep=0.35; ranksep=0.9;\n"
                "node [shape=plain, fontname=\"sans-serif\", fontsize=10, color=\"#5c6672\"];\n"
                "edge [color=\"#5c6672\", arrowsize=0.7];\n";
    for (const TableFacts* table : tables_) WriteTable(*table);
    for (const ForeignKey& key : structure_.ForeignKeys()) WriteKey(key);
    out_.text += "}\n";
    return std::move(out_);
  }

 private:
  void ChooseTables() {
    std::set<std::string> hanging;
    for (const ForeignKey& key : structure_.ForeignKeys()) hanging.insert({key.table, key.toTable});
    const bool all = structure_.Tables().size() <= mostTables;
    for (const TableFacts* table : structure_.Tables())
      if (all || hanging.contains(table->listed)) {
        numbers_[table->listed] = tables_.size();
        tables_.push_back(table);
      }
    out_.tables = tables_.size();
    out_.leftOut = structure_.Tables().size() - tables_.size();
  }

  [[nodiscard]] bool IsOfAKey(const TableFacts& table, const FieldFacts& field) const {
    return field.keyPlace > 0 || !structure_.KeysOf(table.listed, field.name).empty();
  }

  /// All fields when they are few, else those of keys first.
  [[nodiscard]] std::vector<const FieldFacts*> ShownFields(const TableFacts& table) const {
    std::vector<const FieldFacts*> fields;
    for (const FieldFacts& field : table.fields) fields.push_back(&field);
    if (fields.size() <= mostFields) return fields;
    std::ranges::stable_partition(fields,
                                  [&](const FieldFacts* field) { return IsOfAKey(table, *field); });
    fields.resize(mostFields);
    return fields;
  }

  void WriteTable(const TableFacts& table) {
    const std::vector<const FieldFacts*> fields = ShownFields(table);
    out_.text +=
        "t" + std::to_string(numbers_[table.listed]) +
        " [label=<<table border=\"0\" cellborder=\"1\" cellspacing=\"0\" cellpadding=\"3\">"
        "<tr><td bgcolor=\"#d6e6fb\"><b>" +
        Escaped(table.listed) + "</b>" + spare + "</td></tr>";
    for (const FieldFacts* field : fields) WriteField(*field);
    if (fields.size() < table.fields.size())
      out_.text += "<tr><td align=\"left\"><i>" +
                   std::to_string(table.fields.size() - fields.size()) + " more</i></td></tr>";
    out_.text += "</table>>];\n";
  }

  void WriteField(const FieldFacts& field) {
    const std::string name = Escaped(field.name);
    out_.text += "<tr><td align=\"left\" bgcolor=\"white\">" +
                 (field.keyPlace > 0 ? "<b>" + name + "</b>" : name) +
                 (field.type.empty() ? "" : " : " + Escaped(field.type)) + spare + "</td></tr>";
  }

  void WriteKey(const ForeignKey& key) {
    const auto from = numbers_.find(key.table);
    const auto to = numbers_.find(key.toTable);
    if (from == numbers_.end() || to == numbers_.end()) return;
    out_.text += "t" + std::to_string(from->second) + " -> t" + std::to_string(to->second) + ";\n";
    ++out_.keys;
  }

  const Structure& structure_;
  std::vector<const TableFacts*> tables_;
  std::map<std::string, std::size_t> numbers_;
  DiagramText out_;
};

}  // namespace

DiagramText MakeDiagramText(const Structure& structure) { return Writer(structure).Write(); }

}  // namespace tessel
