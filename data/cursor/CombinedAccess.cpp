#include "data/cursor/CombinedAccess.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "data/combined/SameValue.h"
#include "data/combined/UnitedColumns.h"
#include "data/cursor/ClientRecordset.h"
#include "data/rows/RowSink.h"

namespace tessel {

namespace {

using Row = std::vector<Value>;

FieldInfo TextField(const char* name) {
  FieldInfo field;
  field.name = name;
  return field;
}

UnitedColumns Unite(const std::vector<NamedRows>& parts) {
  static const std::vector<FieldInfo> noFields;
  std::vector<const std::vector<FieldInfo>*> fields;
  for (const NamedRows& part : parts)
    fields.push_back(part.rows ? &part.rows->Fields() : &noFields);
  return UniteColumns(fields);
}

Value CellOf(const NamedRows& part, std::int64_t row, std::size_t column) {
  return column == UnitedColumns::none ? Value() : ToValue(part.rows->ValueAt(row, column));
}

std::int64_t CountOf(const NamedRows& part) { return part.rows ? part.rows->RecordCount() : 0; }

class PlainComparison final : public RowComparison {
 public:
  PlainComparison(DataAccess& access, CompareRequest request)
      : access_(access), request_(std::move(request)), united_(Unite({request_.a, request_.b})) {
    same_.booleansAreNumbers = request_.booleansAreNumbers;
    for (std::size_t i = 0; i < united_.fields.size(); ++i) {
      const bool inA = united_.columns[0][i] != UnitedColumns::none;
      const bool inB = united_.columns[1][i] != UnitedColumns::none;
      if (inA && inB) common_.push_back(i);
      else (inA ? onlyInA_ : onlyInB_).push_back(united_.fields[i].name);
    }
    if (common_.empty())
      throw Error(errorNumber::application, "Tessel",
                  "The two results have no column in common: there is nothing to compare.");
    FindKeys();
  }

  [[nodiscard]] std::int64_t Total() const override { return 1; }
  [[nodiscard]] std::int64_t Done() const override { return rows_ ? 1 : 0; }
  void Step(std::int64_t /*rows*/) override {
    if (!rows_) Run();
  }
  [[nodiscard]] const std::vector<std::string>& OnlyInA() const override { return onlyInA_; }
  [[nodiscard]] const std::vector<std::string>& OnlyInB() const override { return onlyInB_; }
  [[nodiscard]] const CompareCounts& Counts() const override { return counts_; }
  [[nodiscard]] std::shared_ptr<Recordset> Rows() const override { return rows_; }
  [[nodiscard]] bool IsChanged(Bookmark row, std::size_t field) const override {
    const auto found = changed_.find(row);
    return found != changed_.end() && found->second.contains(field);
  }

 private:
  void FindKeys() {
    for (const std::string& key : request_.keys) {
      const auto found = std::ranges::find_if(common_, [&](std::size_t i) {
        return united_.columns[0][i] == request_.a.rows->FindField(key) &&
               united_.columns[1][i] == request_.b.rows->FindField(key);
      });
      if (found == common_.end())
        throw Error(errorNumber::itemNotFound, "Tessel",
                    "There is no column '" + key + "' in both results to find rows by.");
      keys_.push_back(*found);
    }
    if (keys_.empty()) keys_ = common_;
  }

  [[nodiscard]] bool Same(std::int64_t a, std::int64_t b, std::size_t field) const {
    return same_.Same(request_.a.rows->ValueAt(a, united_.columns[0][field]),
                      request_.b.rows->ValueAt(b, united_.columns[1][field]));
  }
  [[nodiscard]] bool SameAll(std::int64_t a, std::int64_t b,
                             const std::vector<std::size_t>& fields) const {
    return std::ranges::all_of(fields, [&](std::size_t field) { return Same(a, b, field); });
  }
  [[nodiscard]] std::uint64_t KeyHash(const NamedRows& part, std::size_t side,
                                      std::int64_t row) const {
    std::uint64_t hash = 0;
    for (const std::size_t key : keys_)
      hash = AddHash(hash, same_.Hash(part.rows->ValueAt(row, united_.columns[side][key])));
    return hash;
  }

  void Match(const std::vector<std::size_t>& fields, std::vector<std::int64_t>& partnerOfA,
             std::vector<std::int64_t>& partnerOfB) const {
    std::multimap<std::uint64_t, std::int64_t> rowsOfA;
    for (std::int64_t a = 0; a < CountOf(request_.a); ++a)
      rowsOfA.emplace(KeyHash(request_.a, 0, a), a);
    for (std::int64_t b = 0; b < CountOf(request_.b); ++b) {
      if (partnerOfB[static_cast<std::size_t>(b)] >= 0) continue;
      const auto [first, last] = rowsOfA.equal_range(KeyHash(request_.b, 1, b));
      for (auto at = first; at != last; ++at) {
        const std::int64_t a = at->second;
        if (partnerOfA[static_cast<std::size_t>(a)] >= 0 || !SameAll(a, b, fields)) continue;
        partnerOfA[static_cast<std::size_t>(a)] = b;
        partnerOfB[static_cast<std::size_t>(b)] = a;
        break;
      }
    }
  }

  void CountKeys() {
    if (request_.keys.empty()) return;
    std::set<std::uint64_t> several;
    for (std::size_t side = 0; side < 2; ++side) {
      const NamedRows& part = side == 0 ? request_.a : request_.b;
      std::set<std::uint64_t> seen;
      for (std::int64_t row = 0; row < CountOf(part); ++row)
        if (const auto hash = KeyHash(part, side, row); !seen.insert(hash).second)
          several.insert(hash);
    }
    counts_.keysNotUnique = static_cast<std::int64_t>(several.size());
  }

  void AddRow(std::size_t side, std::int64_t number, const std::string& state, Value changed) {
    const NamedRows& part = side == 0 ? request_.a : request_.b;
    Row row{state, part.name, std::move(changed)};
    for (const std::size_t column : united_.columns[side])
      row.push_back(CellOf(part, number, column));
    made_.push_back(std::move(row));
  }

  void AddChanged(std::int64_t a, std::int64_t b) {
    std::set<std::size_t> fields;
    std::string names;
    for (const std::size_t field : common_) {
      if (Same(a, b, field)) continue;
      fields.insert(field + 3);
      names += (names.empty() ? "" : ", ") + united_.fields[field].name;
    }
    for (std::size_t side = 0; side < 2; ++side) {
      AddRow(side, side == 0 ? a : b, "changed", names);
      changed_[static_cast<Bookmark>(made_.size())] = fields;
    }
    ++counts_.changed;
  }

  void Run() {
    std::vector<std::int64_t> partnerOfA(static_cast<std::size_t>(CountOf(request_.a)), -1);
    std::vector<std::int64_t> partnerOfB(static_cast<std::size_t>(CountOf(request_.b)), -1);
    Match(common_, partnerOfA, partnerOfB);
    const std::vector<std::int64_t> equal = partnerOfA;
    if (!request_.keys.empty()) Match(keys_, partnerOfA, partnerOfB);
    CountKeys();
    for (std::size_t a = 0; a < partnerOfA.size(); ++a) {
      if (equal[a] >= 0) {
        ++counts_.equal;
      } else if (partnerOfA[a] >= 0) {
        AddChanged(static_cast<std::int64_t>(a), partnerOfA[a]);
      } else {
        AddRow(0, static_cast<std::int64_t>(a), "only in " + request_.a.name, {});
        ++counts_.onlyInA;
      }
    }
    for (std::size_t b = 0; b < partnerOfB.size(); ++b) {
      if (partnerOfB[b] >= 0) continue;
      AddRow(1, static_cast<std::int64_t>(b), "only in " + request_.b.name, {});
      ++counts_.onlyInB;
    }
    std::vector<FieldInfo> fields{TextField("State"), TextField("Connection"),
                                  TextField("Changed")};
    fields.insert(fields.end(), united_.fields.begin(), united_.fields.end());
    rows_ = access_.MakeRecordset(std::move(fields), made_);
  }

  DataAccess& access_;
  CompareRequest request_;
  UnitedColumns united_;
  ValueSameness same_;
  std::vector<std::size_t> common_;
  std::vector<std::size_t> keys_;
  std::vector<std::string> onlyInA_;
  std::vector<std::string> onlyInB_;
  CompareCounts counts_;
  std::vector<Row> made_;
  std::map<Bookmark, std::set<std::size_t>> changed_;
  std::shared_ptr<Recordset> rows_;
};

}  // namespace

std::shared_ptr<Recordset>
CombinedAccess::MakeRecordset(std::vector<FieldInfo> fields,
                              const std::vector<std::vector<Value>>& rows) {
  RowSink sink(fields.size());
  for (const std::vector<Value>& row : rows) {
    for (std::size_t i = 0; i < fields.size(); ++i)
      sink.Column(i).Append(i < row.size() ? row[i] : Value());
    sink.EndRow();
  }
  sink.CloseChunk();
  auto recordset = std::make_shared<ClientRecordset>(std::weak_ptr<CursorHost>(), std::string(),
                                                     LockType::ReadOnly);
  recordset->BeginRows(nullptr, std::move(fields));
  recordset->AddRows(nullptr, sink.TakeChunks());
  recordset->EndRows(nullptr, {});
  return recordset;
}

std::shared_ptr<Recordset> CombinedAccess::MergeRows(const std::vector<NamedRows>& parts) {
  const UnitedColumns united = Unite(parts);
  std::vector<Row> rows;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    for (std::int64_t number = 0; number < CountOf(parts[i]); ++number) {
      Row& row = rows.emplace_back(Row{parts[i].name});
      for (const std::size_t column : united.columns[i])
        row.push_back(CellOf(parts[i], number, column));
    }
  }
  std::vector<FieldInfo> fields{TextField("Connection")};
  fields.insert(fields.end(), united.fields.begin(), united.fields.end());
  return MakeRecordset(std::move(fields), rows);
}

std::unique_ptr<RowComparison> CombinedAccess::CompareRows(CompareRequest request) {
  return std::make_unique<PlainComparison>(*this, std::move(request));
}

}  // namespace tessel
