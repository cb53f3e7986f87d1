#include "tests/data/conversion/RoundTrip.h"

#include <algorithm>
#include <utility>

#include "contract/data/DbmsName.h"
#include "contract/text/Fnv.h"
#include "logic/import/ImportTarget.h"
#include "logic/results/export/ExportTarget.h"
#include "logic/results/stream/RecordBatch.h"
#include "tests/support/DataSteps.h"

namespace tessel::test {

namespace {

/// A cell as a line shows it: the kind of its value, and the value.
std::string Shown(const ValueView& value) {
  std::string text = std::to_string(value.index()) + ":";
  const auto* binary = std::get_if<BinaryView>(&value);
  if (binary == nullptr) return text + ToText(value);
  for (const std::byte byte : binary->bytes)
    text += std::to_string(std::to_integer<int>(byte)) + " ";
  return text;
}

}  // namespace

std::vector<Passage> Passages() {
  std::vector<Passage> all = {{"comma", {}}};
  const auto add = [&all](const char* name) -> ExportChoices& {
    all.push_back({name, {}});
    return all.back().choices;
  };
  ExportChoices& decimalComma = add("semicolon and decimal comma");
  decimalComma.delimiter = ';';
  decimalComma.decimalSign = ',';
  ExportChoices& quoted = add("everything in quotes, NULL a word");
  quoted.quotes = QuoteRule::All;
  quoted.nullText = "NULL";
  quoted.lineEndWithReturn = false;
  ExportChoices& base64 = add("bar and base64, NULL a backslash and N");
  base64.delimiter = '|';
  base64.binary = BinaryForm::Base64;
  base64.nullText = "\\N";
  base64.quotes = QuoteRule::Texts;
  ExportChoices& utf16 = add("UTF-16, NULL a dash");
  utf16.code = TextCode::Utf16;
  utf16.nullText = "-";
  add("UTF-8 with mark").code = TextCode::Utf8WithMark;
  add("tabs").format = ExportFormat::Tabs;
  add("JSON array").format = ExportFormat::JsonArray;
  add("JSON lines").format = ExportFormat::JsonLines;
  return all;
}

SqlDialect RoundTrip::Dialect() const { return DialectOf(DbmsName(*connection_)); }

std::string RoundTrip::Exported(const std::string& query, const ExportChoices& choices) {
  const std::shared_ptr<Recordset> rows = QueryNow(*connection_, query);
  const std::string path = folder_.File("file-" + std::to_string(++count_));
  const auto target = MakeTextTarget(files_, path, choices, rows->Fields());
  BatchReader reader(rows, 0, rows->Fields().size(), {});
  target->Begin();
  while (!reader.AtEnd()) {
    const auto batch = reader.NewBatch();
    while (!reader.AtEnd() && !IsFull(*batch)) reader.ReadInto(*batch);
    target->Take(*batch);
  }
  target->End(reader.Count());
  return path;
}

ImportSource RoundTrip::SourceOf(const std::string& path) {
  return {path, [this, path] { return files_.OpenToRead(path); }};
}

ImportFormat RoundTrip::FormatOf(const ImportSource& source, const Passage& passage) {
  ImportFormat format = GuessFormat(source);
  format.nullText = passage.choices.nullText;
  format.decimalSign = passage.choices.decimalSign;
  return format;
}

ImportScan ScanOf(const ImportSource& source, const ImportFormat& format) {
  ImportScan scan(source, format);
  while (scan.Step()) {
  }
  return scan;
}

std::shared_ptr<LoadOperation> RoundTrip::Load(LoadRequest request, const ImportSource& source,
                                               const ImportFormat& format,
                                               const ImportMapping& mapping,
                                               std::vector<std::string> names) {
  const std::vector<ImportColumn> columns = mapping.Loaded();
  for (const ImportColumn& column : columns) request.columns.push_back(column.target);
  request.rows = std::make_shared<ImportFeed>(source, format, std::move(names), columns);
  const auto load = connection_->StartLoad(std::move(request));
  load->Wait();
  return load;
}

std::shared_ptr<LoadOperation> RoundTrip::IntoTable(const std::string& path, const Passage& passage,
                                                    const std::string& table,
                                                    const std::vector<TableColumn>& columns) {
  const ImportSource source = SourceOf(path);
  const ImportFormat format = FormatOf(source, passage);
  const ImportScan scan = ScanOf(source, format);
  LoadRequest request;
  request.table = table;
  return Load(std::move(request), source, format, ImportMapping::ToTable(scan, columns, false),
              scan.Names());
}

std::shared_ptr<LoadOperation> RoundTrip::IntoNewTable(const std::string& path,
                                                       const Passage& passage,
                                                       const std::string& table,
                                                       const std::vector<std::string>& bytes) {
  const ImportSource source = SourceOf(path);
  const ImportFormat format = FormatOf(source, passage);
  const ImportScan scan = ScanOf(source, format);
  ImportMapping mapping = ImportMapping::ToNew(scan);
  for (std::size_t i = 0; i < mapping.Columns().size(); ++i)
    if (std::ranges::count(bytes, mapping.Columns()[i].source) != 0)
      mapping.SetType(i, DataType::LongVarBinary);
  LoadRequest request;
  request.table = table;
  request.createTable = CreateTableText(Dialect(), NameQuoting(connection_->ProviderProperties()),
                                        table, mapping.Made());
  return Load(std::move(request), source, format, mapping, scan.Names());
}

std::vector<TableColumn> RoundTrip::ColumnsOf(const std::string& catalog, const std::string& schema,
                                              const std::string& table) const {
  const auto rows = ReadSchema(*connection_, SchemaRowset::Columns, {catalog, schema, table});
  std::vector<TableColumn> columns;
  for (std::int64_t row = 0; row < rows->RecordCount(); ++row) {
    const auto at = [&](const char* field) {
      return ToValue(rows->ValueAt(row, rows->FindField(field).value()));
    };
    columns.push_back(
        {ToText(ToView(at("COLUMN_NAME"))),
         ImportedType(Dialect(), static_cast<DataType>(std::get<std::int64_t>(at("DATA_TYPE")))),
         ""});
  }
  return columns;
}

std::vector<std::string> RoundTrip::Lines(const std::string& query) const {
  const std::shared_ptr<Recordset> rows = QueryNow(*connection_, query);
  std::vector<std::string> lines;
  for (std::int64_t row = 0; row < rows->RecordCount(); ++row) {
    std::string& line = lines.emplace_back();
    for (std::size_t field = 0; field < rows->Fields().size(); ++field)
      line += (field == 0 ? "" : "|") + Shown(rows->ValueAt(row, field));
  }
  return lines;
}

RowSum RoundTrip::SumOf(const std::string& query) const {
  const std::shared_ptr<Recordset> rows = QueryNow(*connection_, query);
  RowSum sum{.rows = rows->RecordCount(), .sum = fnvOfNothing};
  for (std::int64_t row = 0; row < sum.rows; ++row)
    for (std::size_t field = 0; field < rows->Fields().size(); ++field) {
      const std::string shown = Shown(rows->ValueAt(row, field));
      sum.sum = Fnv1a(std::to_string(shown.size()) + " " + shown, sum.sum);
    }
  return sum;
}

}  // namespace tessel::test
