#pragma once

#include <cstdint>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "contract/data/BulkLoad.h"
#include "contract/data/Connection.h"
#include "logic/import/ImportMapping.h"
#include "logic/results/export/formats/ExportChoices.h"
#include "system/PosixFiles.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

/// One way out of a database and back into it: what the user chooses for the file.
struct Passage {
  std::string name;
  ExportChoices choices;

  [[nodiscard]] bool IsJson() const {
    return choices.format == ExportFormat::JsonArray || choices.format == ExportFormat::JsonLines;
  }
};

inline void PrintTo(const Passage& passage, std::ostream* out) { *out << passage.name; }

/// Every format that import reads, under the choices that decide what a value looks like.
[[nodiscard]] std::vector<Passage> Passages();

/// How many rows a query gives, and a sum over all their values: the bytes and the kind of each, in
/// their order.
struct RowSum {
  std::int64_t rows = 0;
  std::uint64_t sum = 0;

  bool operator==(const RowSum&) const = default;
};

inline void PrintTo(const RowSum& sum, std::ostream* out) {
  *out << sum.rows << " rows, sum " << std::hex << sum.sum << std::dec;
}

/// Takes the records of a connection's tables out to files and in again, by what export and import
/// are made of.
class RoundTrip {
 public:
  explicit RoundTrip(std::shared_ptr<Connection> connection) : connection_(std::move(connection)) {}

  [[nodiscard]] SqlDialect Dialect() const;
  /// The path of a file of all rows that `query` gives. Raises what the export raises.
  [[nodiscard]] std::string Exported(const std::string& query, const ExportChoices& choices);

  /// Loads a file that was exported into a table that is there. What import guesses of it is
  /// believed, but for the null text and the decimal sign, which nobody can guess.
  [[nodiscard]] std::shared_ptr<LoadOperation> IntoTable(const std::string& path,
                                                         const Passage& passage,
                                                         const std::string& table,
                                                         const std::vector<TableColumn>& columns);
  /// The same into a table that is made for it, whose types are guessed. `bytes` are the columns
  /// that the user says are bytes where JSON cannot tell them from texts.
  [[nodiscard]] std::shared_ptr<LoadOperation> IntoNewTable(const std::string& path,
                                                            const Passage& passage,
                                                            const std::string& table,
                                                            const std::vector<std::string>& bytes);

  /// The columns of a table of that catalog and schema.
  [[nodiscard]] std::vector<TableColumn>
  ColumnsOf(const std::string& catalog, const std::string& schema, const std::string& table) const;
  /// The rows of a query, a line a row: each value with the kind that it came as.
  [[nodiscard]] std::vector<std::string> Lines(const std::string& query) const;
  [[nodiscard]] RowSum SumOf(const std::string& query) const;

 private:
  [[nodiscard]] static ImportFormat FormatOf(const ImportSource& source, const Passage& passage);
  [[nodiscard]] ImportSource SourceOf(const std::string& path);
  [[nodiscard]] std::shared_ptr<LoadOperation> Load(LoadRequest request, const ImportSource& source,
                                                    const ImportFormat& format,
                                                    const ImportMapping& mapping,
                                                    std::vector<std::string> names);

  std::shared_ptr<Connection> connection_;
  PosixFiles files_;
  TemporaryFolder folder_;
  int count_ = 0;
};

/// Looks through a source to its end.
[[nodiscard]] ImportScan ScanOf(const ImportSource& source, const ImportFormat& format);

}  // namespace tessel::test
