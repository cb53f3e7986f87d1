#include "tests/support/CombinedSteps.h"

#include "tests/support/TestStop.h"

namespace tessel::test {

void StepToEnd(RowComparison& comparison, std::int64_t rows) {
  while (comparison.Done() < comparison.Total()) {
    const std::int64_t before = comparison.Done();
    comparison.Step(rows);
    if (comparison.Done() <= before) StopTest("A step led nowhere.");
    if (comparison.Done() > before + rows) StopTest("A step did more than it was asked for.");
  }
}

std::vector<std::string> NamesOf(const Recordset& recordset) {
  std::vector<std::string> names;
  for (const FieldInfo& field : recordset.Fields()) names.push_back(field.name);
  return names;
}

std::vector<std::string> LinesOf(const Recordset& recordset) {
  std::vector<std::string> lines;
  for (std::int64_t position = 0; position < recordset.RecordCount(); ++position) {
    std::string& line = lines.emplace_back();
    for (std::size_t field = 0; field < recordset.Fields().size(); ++field) {
      const ValueView value = recordset.ValueAt(position, field);
      line += (field == 0 ? "" : "|") + (IsNull(value) ? "NULL" : ToText(value));
    }
  }
  return lines;
}

std::vector<std::int64_t> CountsOf(const RowComparison& comparison) {
  const CompareCounts& counts = comparison.Counts();
  return {counts.onlyInA, counts.onlyInB, counts.changed, counts.equal, counts.keysNotUnique};
}

std::vector<std::string> MarksOf(const RowComparison& comparison) {
  const auto rows = comparison.Rows();
  std::vector<std::string> marks;
  for (std::int64_t position = 0; position < rows->RecordCount(); ++position) {
    std::string& line = marks.emplace_back();
    const Bookmark row = rows->BookmarkAt(position);
    for (std::size_t field = 0; field < rows->Fields().size(); ++field)
      line += comparison.IsChanged(row, field) ? rows->Fields()[field].name.back() : '-';
  }
  return marks;
}

}  // namespace tessel::test
