#pragma once

#include <memory>
#include <string>
#include <vector>

#include "logic/program/dlgAsync.h"
#include "logic/query/completion/vocab.h"
#include "logic/schema/SchemaTree.h"
#include "tests/headless/HeadlessTreeView.h"
#include "tests/logic/LogicFixture.h"
#include "tests/support/DataSteps.h"

namespace tessel::test {

inline const std::string tablesQuery =
    "SELECT TABLE_NAME FROM INFORMATION_SCHEMA.TABLES WHERE TABLE_TYPE IN ('TABLE', 'BASE TABLE') "
    "AND TABLE_SCHEMA <> 'INFORMATION_SCHEMA' ORDER BY TABLE_NAME";
inline const std::string columnsQuery =
    "SELECT TABLE_NAME, COLUMN_NAME FROM INFORMATION_SCHEMA.COLUMNS WHERE TABLE_SCHEMA <> "
    "'INFORMATION_SCHEMA' ORDER BY TABLE_NAME, ORDINAL_POSITION";

/// The rows of both standard views, in the order of `schema`.
inline void AnswerViews(MemoryServer& server, const Schema& schema) {
  MemoryRows tables;
  MemoryRows columns;
  for (const TableSchema& table : schema) {
    tables.push_back({table.name});
    for (const std::string& field : table.fields) columns.push_back({table.name, field});
  }
  server.Answer(tablesQuery, MemoryFields({"TABLE_NAME"}), std::move(tables));
  server.Answer(columnsQuery, MemoryFields({"TABLE_NAME", "COLUMN_NAME"}), std::move(columns));
}

/// The frame with its tree, a database node "d1", and an open connection of it.
class SchemaFixture : public LogicFixture {
 protected:
  SchemaFixture() {
    frame->Show();
    vocabulary.LoadVocabulary();
    tree.AddDatabase("d1", "Shop");
    connection->SetConnectionString("Database=shop");
    test::OpenNow(*connection);
  }

  /// What hangs on a database node.
  [[nodiscard]] Schema Tables(const std::string& key = "d1") { return tree.Tables(key); }
  [[nodiscard]] static std::vector<std::string> WordsOf(const Vocabulary::Section& section) {
    std::vector<std::string> words;
    for (const auto& [name, list] : section) words.insert(words.end(), list.begin(), list.end());
    return words;
  }
  /// Presses Cancel in the progress window when pending events are processed for the `call`th time.
  void CancelAt(int call) {
    desktop.OnProcessPending([this, call](int number) {
      if (number == call) desktop.WindowOf("dlgAsync").Click("cmdCancel");
    });
  }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  HeadlessTreeView& view = frame->Find<HeadlessTreeView>("trvBrowser");
  dlgAsync async{desktop, *frame};
  Vocabulary vocabulary{global};
  SchemaTree tree{view, vocabulary};
  std::shared_ptr<Connection> connection = data.CreateConnection();
};

}  // namespace tessel::test
