// What a text looks like: JSON or values with a delimiter, which delimiter, and whether its first
// record is a header. The user sees what was guessed and may say otherwise.

#include "logic/import/guessing/ImportFormat.h"

#include <algorithm>
#include <array>
#include <set>

#include "contract/text/Ascii.h"
#include "contract/text/ByteOrderMark.h"
#include "logic/import/guessing/ColumnGuess.h"
#include "logic/import/reading/DelimitedReader.h"
#include "logic/import/reading/JsonReader.h"
#include "logic/program/Global.h"

namespace tessel {

namespace {

constexpr std::size_t sampleBytes = 64UL * 1024;
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
      if (step == RecordReader::Step::End || (step != RecordReader::Step::Record && pieces++ > 2))
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
  format.hasHeader = LooksLikeHeader(FirstRecords(source, format));
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
