#pragma once

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
#include "data/providers/SchemaRows.h"

namespace tessel {

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
  std::string table;              ///< Its rows are those of this table.
  std::vector<FieldInfo> fields;  ///< Empty: the command returns no rows.
  /// Those of the table too, so a change of a record changes them; the owner may do so as well, as
  /// another user would.
  std::shared_ptr<MemoryRows> rows = std::make_shared<MemoryRows>();
  std::int64_t recordsAffected = -1;
  std::optional<ErrorInfo> failure;            ///< The command fails.
  std::vector<ErrorInfo> notices;              ///< In Errors although the command succeeded.
  std::optional<std::size_t> failAtRow;        ///< With `failure`: only after so many rows.
  std::optional<std::size_t> failedAt;         ///< With `failure`: the byte complained of.
  std::size_t block = 100;                     ///< Rows that are fetched at once.
  bool uniqueRows = true;                      ///< The first field is a key of the table.
  bool writable = true;                        ///< The rows can be told to come from the table.
  std::optional<std::string> newCatalog;       ///< The command changes the catalog in use.
  std::optional<UserTransaction> transaction;  ///< What the user's is like afterwards.
  bool holdExecuting = false;                  ///< Runs until it is cancelled or resumed.
  std::optional<std::size_t> holdAtRow;        ///< The fetch stops here until cancelled or resumed.
  std::vector<MemoryResult> then;              ///< What the statements behind it come to.

  MemoryResult& Notices(std::vector<ErrorInfo> list);
  MemoryResult& FailAtRow(std::size_t row, ErrorInfo error);
  MemoryResult& FailedAt(std::size_t byte);
  MemoryResult& Block(std::size_t size);
  MemoryResult& UniqueRows(bool unique);
  MemoryResult& Writable(bool canBeWritten);
  MemoryResult& NewCatalog(std::string name);
  MemoryResult& Leaves(UserTransaction state);
  MemoryResult& HoldExecuting();
  MemoryResult& HoldAtRow(std::size_t row);
  /// What the next statement of the same text comes to; it can have rows, a count or a failure.
  MemoryResult& Then(MemoryResult next);
  /// A result of its own, for Then.
  [[nodiscard]] static MemoryResult Rows(std::vector<FieldInfo> fields, MemoryRows rows);
  [[nodiscard]] static MemoryResult Count(std::int64_t recordsAffected);
  [[nodiscard]] static MemoryResult Failure(ErrorInfo error);

  /// The fields as a database describes them: with their table and column where rows are writable.
  [[nodiscard]] std::vector<FieldInfo> DescribedFields() const;
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
/// Empty catalog and schema names of tables stand for null. It outlives its sessions; on the thread
/// of all of them.
class MemoryServer {
 public:
  MemoryServer();

  // --- answers to commands -----------------------------------------------------------------------
  /// Answers are given to the exact text of a command: several for one text in order, the last one
  /// again and again. The reference may be used to refine the answer.
  MemoryResult& Answer(const std::string& sql, std::vector<FieldInfo> fields, MemoryRows rows);
  MemoryResult& AnswerCount(const std::string& sql, std::int64_t recordsAffected);
  MemoryResult& AnswerNothing(const std::string& sql);
  MemoryResult& AnswerError(const std::string& sql, ErrorInfo error);
  /// The next answer to a command; null when there is none.
  [[nodiscard]] const MemoryResult* FindAnswer(const std::string& sql) const;
  /// The same, and goes on to the one behind it; raises Error when there is none.
  [[nodiscard]] const MemoryResult& TakeAnswer(const std::string& sql);
  /// The result whose rows are those of `table`; null when there is none.
  [[nodiscard]] MemoryResult* FindTable(std::string_view table);

  // --- what the server has -----------------------------------------------------------------------
  std::string defaultDatabase;
  std::vector<std::string> catalogs;
  std::vector<MemoryTable> tables;
  std::vector<SchemaKeyColumn> primaryKeys;
  std::vector<SchemaForeignColumn> foreignKeys;
  std::vector<SchemaIndexColumn> indexes;
  std::vector<SchemaRoutine> routines;
  std::map<std::string, std::string> definitions;  ///< By "VIEW name" and the like.
  /// Of an open connection; "Data Source Object Threading Model" is 1 at first.
  Properties properties;
  /// Whether a catalog may be named in [brackets].
  bool takesBrackets = false;
  /// What was made by CREATE TABLE so far: the text behind these words.
  std::vector<std::string> created;

  // --- failures and delays on demand -------------------------------------------------------------
  std::optional<ErrorInfo> openRefused;  ///< No session is made.
  std::optional<ErrorInfo> openFailure;  ///< The opening ends with it.
  bool holdConnecting = false;           ///< Opening goes on until it is cancelled or resumed.
  std::map<std::string, ErrorInfo> catalogFailures;  ///< By the name as given.
  bool holdCatalogChanges = false;                   ///< They go on until cancelled or resumed.
  std::map<SchemaRowset, ErrorInfo> schemaFailures;
  std::set<SchemaRowset> holdSchemas;  ///< Reading these goes on until it is cancelled or resumed.
  std::optional<ErrorInfo> changeFailure;  ///< Writing and deleting a row fail...
  int changesBeforeFailure = 0;            ///< ... after so many that succeed.
  bool holdChanges = false;                ///< They go on until cancelled or resumed.

  /// Adds the rows of a schema rowset; raises Error when it is to fail.
  void ReadSchema(SchemaRows& rows) const;
  /// The catalog that `name` stands for; raises Error when there is none.
  [[nodiscard]] std::string FindCatalog(const std::string& name) const;

 private:
  struct Answers {
    std::deque<MemoryResult> list;
    std::size_t next = 0;
  };

  MemoryResult& Add(const std::string& sql, MemoryResult result);
  void ReadStructure(SchemaRows& rows) const;

  std::map<std::string, Answers> answers_;
  int tables_ = 0;
};

}  // namespace tessel
