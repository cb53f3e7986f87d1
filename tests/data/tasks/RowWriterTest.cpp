#include "data/tasks/RowWriter.h"

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "data/changes/WriteDialects.h"

namespace tessel::test {

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// Notes the statements it is given; each of them touches one row.
class NotingSession : public ProviderSession {
 public:
  explicit NotingSession(std::string catalog) : catalog_(std::move(catalog)) {}

  void Open(const Login& /*login*/, WorkContext& /*context*/) override {}
  void Close() noexcept override {}
  [[nodiscard]] Properties ReadProperties() override { return {}; }
  [[nodiscard]] std::vector<FieldInfo> ExecuteCommand(const std::string& /*sql*/,
                                                      WorkContext& /*context*/) override {
    return {};
  }
  [[nodiscard]] bool FetchRows(RowSink& /*rows*/, std::size_t /*maxRows*/,
                               WorkContext& /*context*/) override {
    return false;
  }
  [[nodiscard]] std::vector<FieldInfo> NextResult(WorkContext& /*context*/) override { return {}; }
  void CloseResult() noexcept override {}
  [[nodiscard]] std::vector<std::size_t>
  FindKey(std::size_t /*result*/, const std::vector<FieldInfo>& /*fields*/) override {
    return {};
  }
  [[nodiscard]] const WriteDialect* Writing() override { return &dialect_; }
  [[nodiscard]] StatementResult RunStatement(const RowStatement& statement,
                                             WorkContext& /*context*/) override {
    statements.push_back(statement.sql);
    return {.rows = 1, .first = {}};
  }
  void RunControl(std::string_view sql, const WorkContext* /*context*/) override {
    statements.emplace_back(sql);
  }
  [[nodiscard]] std::string CurrentCatalog() override { return catalog_; }
  void SetCatalog(const std::string& /*name*/, WorkContext& /*context*/) override {}
  void ReadSchema(SchemaRows& /*rows*/, WorkContext& /*context*/) override {}
  void Cancel() noexcept override {}

  std::vector<std::string> statements;

 private:
  std::string catalog_;
  WriteDialect dialect_ = PostgresDialect();
};

FieldInfo Column(const char* name) {
  FieldInfo field;
  field.name = field.baseColumn = name;
  field.type = DataType::BigInt;
  field.baseCatalog = "prod";
  field.baseSchema = "public";
  field.baseTable = "t";
  field.updatable = true;
  return field;
}

/// Of the row (1, 2) of t, whose key is its first field.
RowChange ChangeOf(RowChange::Kind kind) {
  const Value one = std::int64_t{1};
  const Value two = std::int64_t{2};
  return {.kind = kind,
          .catalog = "prod",
          .fields = {Column("a"), Column("b")},
          .key = {0},
          .originals = {one, two},
          .changes = FieldValues(2),
          .isLong = {false, false}};
}

}  // namespace

TEST(RowWriter, LooksAtTheCatalogInUseRightBeforeItWrites) {
  using Kind = RowChange::Kind;
  for (const Kind kind : {Kind::Update, Kind::Insert, Kind::Delete}) {
    RowChange change = ChangeOf(kind);
    if (kind != Kind::Delete) change.changes[1] = Value(std::int64_t{3});
    WorkContext context;
    NotingSession other("test");
    try {
      (void)WriteRow(other, change, context);
      ADD_FAILURE() << "It was written.";
    } catch (const Error& error) {
      EXPECT_THAT(error.Description(), HasSubstr("come from the database 'prod', and 'test'"));
    }
    EXPECT_THAT(other.statements, ElementsAre("begin", "rollback"));
    NotingSession same("prod");
    (void)WriteRow(same, change, context);
    EXPECT_EQ(same.statements.size(), 3U) << "the change, in a transaction";
  }
}

TEST(RowWriter, ADeletionComparesAllThatWasReadAndAnUpdateWhatItChanges) {
  WorkContext context;
  NotingSession session("prod");
  (void)WriteRow(session, ChangeOf(RowChange::Kind::Delete), context);
  EXPECT_THAT(session.statements, Contains(HasSubstr("\"b\" is not distinct from ?")));
  RowChange update = ChangeOf(RowChange::Kind::Update);
  update.changes[0] = Value(std::int64_t{7});
  NotingSession updating("prod");
  (void)WriteRow(updating, update, context);
  EXPECT_THAT(updating.statements, Not(Contains(HasSubstr("\"b\" is not distinct from"))));
}

}  // namespace tessel::test
