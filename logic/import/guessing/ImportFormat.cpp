// What a text looks like: JSON or values with a delimiter, which delimiter, and whether its first
// record is a header. The user sees what was guessed and may say otherwise.

#include "logic/import/guessing/ImportFormat.h"

#include <algorithm>
#include <array>
#include <set>
#include <span>

#include "contract/text/Ascii.h"
#include "contract/text/ByteOrderMark.h"
#include "logic/import/guessing/ColumnGuess.h"
#include "logic/import/reading/DelimitedReader.h"
#include "logic/import/reading/JsonReader.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr std::size_t sampleBytes = 64UL * 1024;
constexpr int samplePieces = 8;
constexpr std::size_t sampleRecords = 50;

std::string FirstBytes(const ImportSource& source) {
  const std::unique_ptr<FileReader> reader = source.open();
  std::string bytes(sampleBytes, '\0');
  bytes.resize(reader->Read(bytes));
  return bytes;
}

/// The first records of a source that is a text with values; fewer when one of them is broken.
std::vector<std::vector<std::string>> FirstRecords(const ImportSource& source,
                                                   const ImportFormat& format) {
  std::vector<std::vector<std::string>> records;
  try {
    const auto reader = MakeReader(source, format, {}, sampleBytes);
    ImportRecord record;
    int pieces = 0;
    while (records.size() < sampleRecords) {
      const RecordReader::Step step = reader->Next(record);
      if (step == RecordReader::Step::End ||
          (step == RecordReader::Step::NeedsMore && pieces++ == samplePieces))
        break;
      if (step == RecordReader::Step::NeedsMore) reader->ReadMore();
      else records.emplace_back();
      if (step != RecordReader::Step::Record) continue;
      for (const ImportCell& cell : record.cells) records.back().emplace_back(cell.View());
    }
  } catch (const Error&) {
    return records;  // Whoever reads on will tell.
  }
  return records;
}

/// How well a delimiter fits: the values of a record where all have the same number, less where
/// they have not; 0 where it stands nowhere.
double FitOf(const std::vector<std::vector<std::string>>& records) {
  if (records.empty() || records.front().size() < 2) return 0;
  const std::size_t columns = records.front().size();
  const auto same =
      std::ranges::count_if(records, [&](const auto& record) { return record.size() == columns; });
  return static_cast<double>(same) / static_cast<double>(records.size()) *
         (1 + static_cast<double>(std::min<std::size_t>(columns, 100)) / 1000);
}

char GuessDelimiter(const ImportSource& source, ImportFormat format) {
  constexpr std::array delimiters = {',', '\t', ';', '|'};
  char best = ',';
  double bestFit = 0;
  for (const char delimiter : delimiters) {
    format.delimiter = delimiter;
    const double fit = FitOf(FirstRecords(source, format));
    if (fit <= bestFit) continue;
    best = delimiter;
    bestFit = fit;
  }
  return best;
}

/// A header has a name for every column, none twice, and none is a number or a date.
bool LooksLikeHeader(const std::vector<std::vector<std::string>>& records) {
  if (records.empty()) return true;
  std::set<std::string, std::less<>> names;
  return std::ranges::all_of(records.front(), [&](const std::string& name) {
    return !name.empty() && !IsPlainValue(name) && names.insert(AsciiUpper(name)).second;
  });
}

/// What a column of these records holds when numbers have that decimal sign.
DataType ColumnTypeUnder(char decimalSign, std::span<const std::vector<std::string>> records,
                         std::size_t column) {
  ColumnGuess guess;
  for (const std::vector<std::string>& record : records) {
    if (column >= record.size() || record[column].empty()) continue;
    std::string text = record[column];
    guess.Add({text.data(), text.size(), ImportForm::Bare}, decimalSign, false);
  }
  return guess.Type().type;
}

bool HasFraction(DataType type) { return type == DataType::Numeric || type == DataType::Double; }

/// Three digits behind a comma may as well be thousands.
bool HasOnlyThousands(std::span<const std::vector<std::string>> records, std::size_t column) {
  constexpr std::size_t group = 3;
  return std::ranges::all_of(records, [&](const std::vector<std::string>& record) {
    if (column >= record.size()) return true;
    const std::size_t comma = record[column].find(',');
    return comma == std::string::npos || record[column].size() - comma - 1 == group;
  });
}

/// A comma where some column holds numbers with one and none holds numbers with a point. What may
/// be meant otherwise is left to the user: a column with it is a text then, and nothing is lost.
char GuessDecimalSign(std::span<const std::vector<std::string>> records, char delimiter) {
  if (delimiter == ',' || records.empty()) return '.';
  bool found = false;
  for (std::size_t column = 0; column < records.front().size(); ++column) {
    if (HasFraction(ColumnTypeUnder('.', records, column))) return '.';
    found = found || (HasFraction(ColumnTypeUnder(',', records, column)) &&
                      !HasOnlyThousands(records, column));
  }
  return found ? ',' : '.';
}

bool LooksLikeJson(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n", BehindMark(text));
  if (first == std::string_view::npos || (text[first] != '[' && text[first] != '{')) return false;
  const std::size_t second = text.find_first_not_of(" \t\r\n", first + 1);
  const char next = second == std::string_view::npos ? '\0' : text[second];
  return text[first] == '{' ? next == '"' || next == '}' : next == '{' || next == ']';
}

}  // namespace

ImportFormat GuessFormat(const ImportSource& source) {
  const std::string bytes = FirstBytes(source);
  if (bytes.empty()) RaiseAppError("There is nothing in " + source.name + ".");
  const FirstLook look = LookAt(bytes);
  if (!look.kind.empty())
    RaiseAppError("This is no text: " + source.name + " is " + look.kind +
                  ". Save it as CSV in the program that it comes from, and import that.");
  ImportFormat format;
  format.encoding = look.encoding;
  if (LooksLikeJson(DecodePiece(bytes, look.encoding))) {
    format.kind = ImportFormat::Kind::Json;
    return format;
  }
  format.delimiter = GuessDelimiter(source, format);
  const std::vector<std::vector<std::string>> records = FirstRecords(source, format);
  format.hasHeader = LooksLikeHeader(records);
  format.decimalSign = GuessDecimalSign(
      std::span(records).subspan(format.hasHeader && !records.empty() ? 1 : 0), format.delimiter);
  return format;
}

std::unique_ptr<RecordReader> MakeReader(const ImportSource& source, const ImportFormat& format,
                                         std::vector<std::string> names, std::size_t piece) {
  TextWindow window(source.open(), format.encoding, piece);
  if (format.kind == ImportFormat::Kind::Json)
    return std::make_unique<JsonReader>(std::move(window), std::move(names));
  return std::make_unique<DelimitedReader>(std::move(window), format.delimiter, format.nullText);
}

std::vector<std::string> ColumnNames(const ImportRecord& header) {
  std::vector<std::string> names;
  std::set<std::string, std::less<>> taken;
  for (const ImportCell& cell : header.cells) {
    std::string name(TrimSpaces(cell.View()));
    if (name.empty()) name = "column_" + std::to_string(names.size() + 1);
    const std::string wanted = name;
    for (int number = 2; !taken.insert(AsciiUpper(name)).second; ++number)
      name = wanted + "_" + std::to_string(number);
    names.push_back(name);
  }
  return names;
}

}  // namespace tessel
