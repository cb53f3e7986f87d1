#include "tests/desktop/grid/GeneratedRows.h"

#include <array>

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"

namespace tessel::test {

namespace {

const std::string& LongText() {
  static const std::string text(4000, 'x');
  return text;
}

ValueView OrderValue(std::int64_t row, std::size_t field) {
  static constexpr std::array<std::string_view, 4> names{
      "Ada Lovelace", "Grace Hopper", "J\xC3\xBCrgen M\xC3\xBCller", "\xE6\x9D\xB1\xE4\xBA\xAC"};
  static constexpr std::array<std::string_view, 3> amounts{"19.90", "1250.00", "-3.5"};
  const auto pick = static_cast<std::size_t>(row);
  switch (field) {
    case 0: return row + 1;
    case 1: return names[pick % names.size()];
    case 2: return DecimalView{amounts[pick % amounts.size()]};
    case 3: return MomentView{"2026-03-14 15:09:26"};
    case 4: return std::string_view("first line\r\nsecond line\tafter a tab");
    case 5: return row % 3 == 0 ? ValueView() : ValueView(std::string_view("given"));
    case 6: return std::string_view();
    case 7: return row % 2 == 0;
    case 8: return 0.5 * static_cast<double>(row);
    default: return std::string_view(LongText());
  }
}

}  // namespace

std::optional<std::size_t> GeneratedRows::FindField(std::string_view name) const {
  for (std::size_t at = 0; at < fields_.size(); ++at)
    if (EqualNoCase(fields_[at].name, name)) return at;
  return std::nullopt;
}

ValueView GeneratedRows::ValueAt(std::int64_t position, std::size_t field) const {
  if (state_ == objectState::closed)
    throw Error(errorNumber::objectClosed, "Tessel", "The recordset is closed.");
  ++reads_;
  return make_(position, field);
}

std::optional<std::int64_t> GeneratedRows::PositionOf(Bookmark bookmark) const {
  const std::int64_t position = bookmark - offset;
  if (position < 0 || position >= rows_) return std::nullopt;
  return position;
}

void GeneratedRows::MoveTo(Bookmark bookmark) {
  if (!refusal_.empty()) throw Error(errorNumber::database, "Test", refusal_);
  const auto position = PositionOf(bookmark);
  if (!position) throw Error(errorNumber::noCurrentRecord, "Tessel", "There is no such row.");
  at_ = *position;
}

std::shared_ptr<Recordset> GeneratedRows::Clone(LockType /*lock*/) {
  return std::make_shared<GeneratedRows>(fields_, rows_, make_);
}

FieldInfo FieldNamed(std::string name, DataType type) {
  FieldInfo field;
  field.name = std::move(name);
  field.type = type;
  return field;
}

std::shared_ptr<GeneratedRows> OrdersOf(std::int64_t rows) {
  std::vector<FieldInfo> fields{
      FieldNamed("id", DataType::Integer),         FieldNamed("customer", DataType::VarWChar),
      FieldNamed("amount", DataType::Decimal),     FieldNamed("placed", DataType::DBTimeStamp),
      FieldNamed("notes", DataType::LongVarWChar), FieldNamed("maybe", DataType::VarWChar),
      FieldNamed("empty", DataType::VarWChar),     FieldNamed("paid", DataType::Boolean),
      FieldNamed("half", DataType::Double),        FieldNamed("long", DataType::LongVarWChar)};
  return std::make_shared<GeneratedRows>(std::move(fields), rows, &OrderValue);
}

}  // namespace tessel::test
