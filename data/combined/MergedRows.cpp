#include "data/combined/MergedRows.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

FieldInfo TextField(const char* name) {
  FieldInfo field;
  field.name = name;
  return field;
}

}  // namespace

UnitedColumns UniteColumns(const std::vector<NamedPart>& parts) {
  std::vector<const std::vector<FieldInfo>*> fields;
  for (const NamedPart& part : parts) fields.push_back(&part.rows->fields);
  return UniteColumns(fields);
}

CombinedRows::CombinedRows(const std::vector<const char*>& leading, std::vector<NamedPart> parts)
    : leading_(leading.size()), parts_(std::move(parts)) {
  UnitedColumns united = UniteColumns(parts_);
  std::ranges::transform(leading, std::back_inserter(fields), TextField);
  std::ranges::move(united.fields, std::back_inserter(fields));
  columns_ = std::move(united.columns);
}

ValueView CombinedRows::CellAt(std::int64_t row, const Place& place, std::size_t field) const {
  if (field < leading_) return LeadAt(row, place, field);
  const std::size_t column = columns_[place.part][field - leading_];
  if (column == UnitedColumns::none) return std::monostate{};
  return parts_[place.part].rows->At(place.row, column);
}

ValueView CombinedRows::At(std::int64_t row, std::size_t field) const {
  return CellAt(row, PlaceOf(row), field);
}

/// Columns that follow each other in the part too are read at once; how many they were.
std::size_t CombinedRows::ReadNeighbours(const Place& place, std::size_t field,
                                         std::span<ValueView> values) const {
  const std::size_t* columns = columns_[place.part].data() + (field - leading_);
  std::size_t count = 1;
  while (count < values.size() && columns[count] == columns[0] + count) ++count;
  parts_[place.part].rows->Read(place.row, columns[0], values.first(count));
  return count;
}

void CombinedRows::Read(std::int64_t row, std::size_t first, std::span<ValueView> values) const {
  const Place place = PlaceOf(row);
  for (std::size_t i = 0; i < values.size();) {
    const std::size_t field = first + i;
    const bool hasColumn =
        field >= leading_ && columns_[place.part][field - leading_] != UnitedColumns::none;
    if (hasColumn) i += ReadNeighbours(place, field, values.subspan(i));
    else values[i++] = CellAt(row, place, field);
  }
}

// --- merged --------------------------------------------------------------------------------------

MergedRows::MergedRows(std::vector<NamedPart> parts)
    : CombinedRows({"Connection"}, std::move(parts)), starts_{0} {
  for (const NamedPart& part : Parts()) starts_.push_back(starts_.back() + part.rows->Count());
}

CombinedRows::Place MergedRows::PlaceOf(std::int64_t row) const {
  if (row < starts_[last_] || row >= starts_[last_ + 1])
    last_ = static_cast<std::size_t>(std::ranges::upper_bound(starts_, row) - starts_.begin()) - 1;
  return {last_, row - starts_[last_]};
}

ValueView MergedRows::LeadAt(std::int64_t /*row*/, const Place& place,
                             std::size_t /*field*/) const {
  return std::string_view(Parts()[place.part].name);
}

}  // namespace tessel
