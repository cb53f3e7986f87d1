#include "data/cursor/ResultComparison.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

/// The columns of one name that come first on both sides.
ColumnPair KeyPair(const std::string& name, const UnitedColumns& united,
                   const MatchedColumns& matched) {
  for (std::size_t i = 0; i < matched.fields.size(); ++i)
    if (EqualNoCase(united.fields[matched.fields[i]].name, name)) return matched.pairs[i];
  throw Error(errorNumber::itemNotFound, "Tessel",
              "There is no column '" + name + "' in both results to find rows by.");
}

}  // namespace

ResultComparison::ResultComparison(std::vector<NamedPart> parts,
                                   const std::vector<std::string>& keys, ValueSameness sameness) {
  const UnitedColumns united = UniteColumns(parts);
  MatchedColumns matched = Match(united);
  if (matched.pairs.empty())
    throw Error(errorNumber::application, "Tessel",
                "The two results have no column in common: there is nothing to compare.");
  for (const std::string& key : keys) matched.keys.push_back(KeyPair(key, united, matched));
  matching_ = std::make_unique<RowMatching>(std::move(parts), std::move(matched), sameness);
}

MatchedColumns ResultComparison::Match(const UnitedColumns& united) {
  MatchedColumns matched;
  for (std::size_t i = 0; i < united.fields.size(); ++i) {
    const ColumnPair pair{united.columns[0][i], united.columns[1][i]};
    if (pair.b == UnitedColumns::none) {
      onlyInA_.push_back(united.fields[i].name);
    } else if (pair.a == UnitedColumns::none) {
      onlyInB_.push_back(united.fields[i].name);
    } else {
      matched.fields.push_back(static_cast<std::uint32_t>(i));
      matched.pairs.push_back(pair);
    }
  }
  return matched;
}

std::shared_ptr<Recordset> ResultComparison::Rows() const {
  return std::make_shared<FixedRecordset>(matching_->Differing());
}

bool ResultComparison::IsChanged(Bookmark row, std::size_t field) const {
  return matching_->Differing()->IsChanged(row - 1, field);
}

}  // namespace tessel
