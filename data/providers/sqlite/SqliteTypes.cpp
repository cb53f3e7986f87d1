#include "data/providers/sqlite/SqliteTypes.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

struct TypeRule {
  std::string_view part;  ///< Of the declared type's name, in capitals.
  DataType type;
  SqliteForm form = SqliteForm::Plain;
};

/// The first rule whose part is found counts.
constexpr TypeRule typeRules[] = {
    {"BOOL", DataType::Boolean, SqliteForm::Boolean},
    {"DATETIME", DataType::DBTimeStamp, SqliteForm::Moment},
    {"TIMESTAMP", DataType::DBTimeStamp, SqliteForm::Moment},
    {"DATE", DataType::DBDate, SqliteForm::Moment},
    {"TIME", DataType::DBTime, SqliteForm::Moment},
    {"INT", DataType::BigInt},
    {"CHAR", DataType::VarWChar},
    {"CLOB", DataType::LongVarWChar},
    {"TEXT", DataType::LongVarWChar},
    {"BLOB", DataType::LongVarBinary},
    {"BINARY", DataType::VarBinary},
    {"REAL", DataType::Double},
    {"FLOA", DataType::Double},
    {"DOUB", DataType::Double},
    {"DEC", DataType::Numeric, SqliteForm::Decimal},
    {"NUM", DataType::Numeric, SqliteForm::Decimal},
    {"MONEY", DataType::Numeric, SqliteForm::Decimal},
};

/// The number at the start of `text`, which is cut off with the sign that follows it; 0 if none.
int TakeNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_not_of(" ,("), text.size()));
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return number;
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

/// `text` begins with the shape given: "d" stands for a digit. Without a branch at each character:
/// every value of a column is looked at.
template <std::size_t size>
bool BeginsWith(std::string_view text, const char (&shape)[size]) {
  constexpr std::size_t length = size - 1;
  if (text.size() < length) return false;
  bool differs = false;
  for (std::size_t i = 0; i < length; ++i) {
    const char lowest = shape[i] == 'd' ? '0' : shape[i];
    const char highest = shape[i] == 'd' ? '9' : shape[i];
    differs |=
        static_cast<bool>(static_cast<int>(text[i] < lowest) | static_cast<int>(text[i] > highest));
  }
  return !differs;
}

bool IsMoment(std::string_view text) {
  constexpr std::size_t dateLength = 10;
  if (BeginsWith(text, "dd:dd:dd")) return true;
  if (!BeginsWith(text, "dddd-dd-dd")) return false;
  text.remove_prefix(dateLength);
  return text.empty() || BeginsWith(text, " dd:dd:dd");
}

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(std::ranges::find_if_not(text, IsDigit) - text.begin());
}

bool IsDecimal(std::string_view text) {
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t whole = CountDigits(text);
  text.remove_prefix(whole);
  std::size_t fraction = 0;
  if (text.starts_with('.')) {
    fraction = CountDigits(text.substr(1));
    text.remove_prefix(fraction + 1);
  }
  return text.empty() && whole + fraction > 0;
}

void AppendText(std::string_view text, SqliteForm form, ColumnBuilder& cells) {
  if (form == SqliteForm::Moment && IsMoment(text)) return cells.AppendMoment(text);
  if (form == SqliteForm::Decimal && IsDecimal(text)) return cells.AppendDecimal(text);
  cells.AppendText(text);
}

void AppendInteger(std::int64_t number, SqliteForm form, ColumnBuilder& cells) {
  if (form == SqliteForm::Boolean && (number == 0 || number == 1))
    return cells.AppendBoolean(number == 1);
  cells.AppendInteger(number);
}

}  // namespace

SqliteForm ApplyDeclaredType(std::string_view declared, FieldInfo& field) {
  if (declared.empty()) return SqliteForm::Plain;
  field.typeName = declared;
  std::string_view size = declared.substr(std::min(declared.find('('), declared.size()));
  const int first = TakeNumber(size);
  const std::string name = AsciiUpper(declared.substr(0, declared.find('(')));
  const auto rule = std::ranges::find_if(typeRules, [&](const TypeRule& candidate) {
    return name.find(candidate.part) != std::string::npos;
  });
  if (rule == std::end(typeRules)) return SqliteForm::Plain;
  field.type = rule->type;
  if (rule->form == SqliteForm::Decimal) {
    field.precision = first;
    field.scale = TakeNumber(size);
  } else {
    field.definedSize = first;
  }
  return rule->form;
}

DataType TypeOfStorage(SqliteStorage storage) {
  switch (storage) {
    case SqliteStorage::Integer: return DataType::BigInt;
    case SqliteStorage::Real: return DataType::Double;
    case SqliteStorage::Text: return DataType::LongVarWChar;
    case SqliteStorage::Blob: return DataType::LongVarBinary;
    default: return DataType::VarWChar;
  }
}

void AppendSqliteCell(const SqliteStatement& statement, int column, SqliteForm form,
                      ColumnBuilder& cells) {
  const SqliteCell cell = statement.CellAt(column);
  switch (cell.Storage()) {
    case SqliteStorage::Integer: return AppendInteger(cell.Integer(), form, cells);
    case SqliteStorage::Real: return cells.AppendDouble(cell.Real());
    case SqliteStorage::Text: return AppendText(statement.Checked(cell.Text()), form, cells);
    case SqliteStorage::Blob: return cells.AppendBinary(cell.Blob());
    default: return cells.AppendNull();
  }
}

/// One that is larger than SQLite's whole numbers keeps its digits as a text.
void SqliteBinder::operator()(std::uint64_t value) const {
  constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
  if (value <= most) statement.BindInteger(parameter, static_cast<std::int64_t>(value));
  else statement.BindText(parameter, std::to_string(value));
}

}  // namespace tessel
