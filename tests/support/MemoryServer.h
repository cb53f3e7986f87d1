#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "contract/base/Error.h"
#include "contract/base/Properties.h"
#include "contract/base/Value.h"
#include "contract/data/Connection.h"
#include "contract/data/Recordset.h"

namespace tessel::test {

using MemoryRow = std::vector<Value>;
using MemoryRows = std::vector<MemoryRow>;

/// A field that can be written.
[[nodiscard]] FieldInfo MemoryField(std::string name, DataType type = DataType::VarWChar);
/// Fields of text.
[[nodiscard]] std::vector<FieldInfo> MemoryFields(const std::vector<std::string>& names);
/// What a database reports.
[[nodiscard]] ErrorInfo MemoryError(std::string description,
                                    std::int32_t number = errorNumber::database);

/// What the server answers to one command. The members may be changed until the command runs.
struct MemoryResult {
  std::vector<FieldInfo> fields;  ///< Empty: the command returns no rows.
  std::shared_ptr<MemoryRows> rows = std::make_shared<MemoryRows>();
  std::int64_t recordsAffected = -1;
  std::optional<ErrorInfo> failure;      ///< The command fails.
  std::vector<ErrorInfo> notices;        ///< In Errors although the command succeeded.
  std::optional<std::size_t> failAtRow;  ///< With `failure`: only after so many rows.
  std::size_t block = 100;               ///< Rows to one FetchProgress.
  bool uniqueRows = true;
  bool hasUniqueRowsProperty = true;
  bool writable = true;  ///< The rows come from one table; the first field is its key when unique.
  std::optional<std::string> newCatalog;       ///< The command changes the catalog in use.
  std::optional<UserTransaction> transaction;  ///< What the user's is like afterwards.
  bool holdExecuting = false;                  ///< Runs until it is cancelled or resumed.
  std::optional<std::size_t> holdAtRow;        ///< The fetch stops here until cancelled or resumed.

  MemoryResult& Notices(std::vector<ErrorInfo> list);
  MemoryResult& FailAtRow(std::size_t row, ErrorInfo error);
  MemoryResult& Block(std::size_t size);
  MemoryResult& UniqueRows(bool unique);
  MemoryResult& WithoutProperties();
  MemoryResult& Writable(bool canBeWritten);
  MemoryResult& NewCatalog(std::string name);
  MemoryResult& Leaves(UserTransaction state);
  MemoryResult& HoldExecuting();
  MemoryResult& HoldAtRow(std::size_t row);
};

/// One table of the schema rowsets.
struct MemoryTable {
  std::string catalog;
  std::string schema;
  std::string name;
  std::string type = "TABLE";
  std::vector<FieldInfo> columns = {};
  bool needsSchema = false;
};

/// A database server in memory: its answers, catalogs and tables, and a switch for each failure.
/// Empty catalog and schema names of tables stand for null.
class MemoryServer {
 public:
  // --- answers to commands, by their exact text; several for one text are given in order, the last
  // one again and again. The reference may be used to refine the answer.
  MemoryResult& Answer(const std::string& sql, std::vector<FieldInfo> fields, MemoryRows rows);
  MemoryResult& AnswerCount(const std::string& sql, std::int64_t recordsAffected);
  MemoryResult& AnswerNothing(const std::string& sql);
  MemoryResult& AnswerError(const std::string& sql, ErrorInfo error);
  /// The next answer to a command; fails the test when there is none.
  [[nodiscard]] const MemoryResult& TakeAnswer(const std::string& sql);

  // --- what the server has
  // -------------------------------------------------------------------------
  std::string defaultDatabase;
  std::vector<std::string> catalogs;
  std::vector<MemoryTable> tables;
  /// Of an open connection; "Data Source Object Threading Model" is 1 at first.
  Properties properties;
  /// When transactions are first seen: at 14:05.
  std::chrono::system_clock::time_point transactionTime{std::chrono::minutes(14 * 60 + 5)};
  /// Whether a catalog may be named in [brackets].
  bool takesBrackets = false;

  // --- failures on demand
  // --------------------------------------------------------------------------
  std::optional<ErrorInfo> openRefused;  ///< Open raises it at once.
  std::optional<ErrorInfo> openFailure;  ///< The opening ends with it.
  bool holdConnecting = false;           ///< Opening goes on until it is cancelled or resumed.
  std::optional<ErrorInfo> closeFailure;
  std::map<std::string, ErrorInfo> catalogFailures;  ///< By the name as given.
  bool holdCatalogChanges = false;                   ///< They go on until cancelled or resumed.
  std::map<SchemaRowset, ErrorInfo> schemaFailures;
  std::set<SchemaRowset> holdSchemas;  ///< Reading these goes on until it is cancelled or resumed.
  std::optional<ErrorInfo> changeFailure;  ///< Writing and deleting a row fail...
  int changesBeforeFailure = 0;            ///< ... after so many that succeed.
  bool holdChanges = false;                ///< They go on until cancelled or resumed.

  MemoryServer();

  [[nodiscard]] MemoryResult SchemaRows(SchemaRowset schema,
                                        const std::vector<std::string>& restrictions) const;
  /// The catalog that `name` stands for; raises Error when there is none.
  [[nodiscard]] std::string FindCatalog(const std::string& name) const;

 private:
  struct Answers {
    std::deque<MemoryResult> list;
    std::size_t next = 0;
  };

  MemoryResult& Add(const std::string& sql, MemoryResult result);

  std::map<std::string, Answers> answers_;
};

}  // namespace tessel::test
