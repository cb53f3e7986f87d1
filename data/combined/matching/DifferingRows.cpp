#include "data/combined/matching/DifferingRows.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

/// The numbers of the leading fields, and how many they are.
enum Lead : std::size_t { stateField, connectionField, changedField, leadingFields };

}  // namespace

DifferingRows::DifferingRows(std::vector<NamedPart> parts)
    : CombinedRows({"State", "Connection", "Changed"}, std::move(parts)) {
  for (const NamedPart& part : Parts()) onlyIn_.push_back("only in " + part.name);
}

void DifferingRows::AddChanged(Row a, Row b, std::vector<std::uint32_t> columns) {
  const auto next = static_cast<std::uint32_t>(changes_.size());
  const auto [found, isNew] = numbers_.try_emplace(std::move(columns), next);
  if (isNew) changes_.push_back(ChangeOf(found->first));
  picks_.push_back({a, found->second, 0});
  picks_.push_back({b, found->second, 1});
}

DifferingRows::Change DifferingRows::ChangeOf(const std::vector<std::uint32_t>& columns) const {
  Change change{&columns, {}};
  for (const std::uint32_t column : columns)
    change.names += (change.names.empty() ? "" : ", ") + fields[leadingFields + column].name;
  return change;
}

bool DifferingRows::IsChanged(std::int64_t row, std::size_t field) const {
  if (!Contains(row) || field < leadingFields) return false;
  const Change& change = changes_[PickOf(row).change];
  return change.columns != nullptr &&
         std::ranges::binary_search(*change.columns, field - leadingFields);
}

CombinedRows::Place DifferingRows::PlaceOf(std::int64_t row) const {
  const Pick& pick = PickOf(row);
  return {pick.part, pick.row};
}

ValueView DifferingRows::LeadAt(std::int64_t row, const Place& place, std::size_t field) const {
  const std::uint32_t change = PickOf(row).change;
  switch (field) {
    case stateField:
      return change == 0 ? std::string_view(onlyIn_[place.part]) : std::string_view("changed");
    case connectionField: return std::string_view(Parts()[place.part].name);
    default:
      if (change == 0) return std::monostate{};
      return std::string_view(changes_[change].names);
  }
}

}  // namespace tessel
