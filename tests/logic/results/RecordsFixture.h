#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "logic/results/frmRecords.h"
#include "logic/tags/TagValue.h"
#include "tests/logic/LogicFixture.h"

namespace tessel::test {

/// Stands for the frame.
class FakeRecordsHost : public RecordsHost {
 public:
  int GetNextID() override { return ++lastID; }
  void CountRecordsWindow(int change) override { count += change; }
  void AddDatabaseNode(const std::string& key, const std::string& text,
                       std::optional<Color> mark) override {
    nodes[key] = text;
    marks[key] = mark;
  }
  void NameDatabaseNode(const std::string& key, const std::string& text) override {
    nodes[key] = text;
  }
  void RemoveDatabaseNode(const std::string& key) override { nodes.erase(key); }
  void LoadSchema(const std::string& key, const std::shared_ptr<Connection>& connection,
                  bool fromDatabase) override {
    loads.push_back(key + " " + connection->ConnectionString() +
                    (fromDatabase ? " from the database" : " from the file"));
  }
  void FollowCatalog(const std::string& key, const std::shared_ptr<Connection>& connection,
                     bool fromDatabase) override {
    loads.push_back(key + " follows " + connection->DefaultDatabase() +
                    (fromDatabase ? " from the database" : " from the file"));
  }
  void FocusQueryWindow() override { commands.emplace_back("focus query"); }
  void ImportRecords(frmRecords& /*window*/) override { commands.emplace_back("import"); }
  void ShowStatements(frmRecords& window) override {
    commands.emplace_back("statements");
    statements = window.Statements();
  }
  void ShowChart(frmRecords& /*window*/) override { commands.emplace_back("chart"); }
  void ListWindowsIn(Window& window) override { listedIn = &window; }
  void WireWindowMenu(Window& window) override { wired = &window; }
  bool HandleFrameKey(int keyCode, int shift) override {
    return keyCode == frameKey && shift == shiftState::ctrl;
  }
  void mnuNewInstance_Click() override { commands.emplace_back("new instance"); }
  void mnuWindowSidebar_Click() override { commands.emplace_back("sidebar"); }
  void mnuWindowTileHoriz_Click() override { commands.emplace_back("tile horizontally"); }
  void mnuWindowTileVert_Click() override { commands.emplace_back("tile vertically"); }
  void mnuWindowTabs_Click() override { commands.emplace_back("tabs"); }
  void mnuWindowMaximize_Click() override { commands.emplace_back("maximize"); }
  void mnuHelpContents_Click() override { commands.emplace_back("contents"); }
  void mnuHelpIndex_Click() override { commands.emplace_back("index"); }
  void mnuHelpShortcuts_Click() override { commands.emplace_back("shortcuts"); }
  void mnuHelpAbout_Click() override { commands.emplace_back("about"); }
  [[nodiscard]] bool SidebarShown() const override { return sidebarShown; }
  void ForgetStatements(frmRecords& /*window*/) override { statements.reset(); }
  void InsertText(std::string_view text) override { inserted += text; }
  DataGrid* RowsForTags() override { return rowsForTags; }
  std::vector<NamedRows> RowsOfAll() override { return rowsOfAll; }
  std::string GetTagValue(const std::string& name, bool parenthesised, bool quoted) override {
    const auto found = tagValues.find(name);
    if (found == tagValues.end()) RaiseAppError("Undefined tag: '" + name + "'");
    return FormatTagText(found->second, parenthesised, quoted);
  }

  int lastID = 0;
  int count = 0;
  bool sidebarShown = true;
  Window* listedIn = nullptr;
  Window* wired = nullptr;
  int frameKey = 0;  ///< With Ctrl the frame takes it.
  std::shared_ptr<const StatementList> statements;
  DataGrid* rowsForTags = nullptr;
  std::vector<NamedRows> rowsOfAll;
  std::map<std::string, std::string> nodes;
  std::map<std::string, std::optional<Color>> marks;
  std::vector<std::string> loads;
  std::vector<std::string> commands;
  std::string inserted;
  std::map<std::string, std::string> tagValues;
};

/// A records window that is not connected yet, and a frame for it.
class RecordsFixture : public LogicFixture {
 protected:
  RecordsFixture() {
    frame->Show();
    records = std::make_unique<frmRecords>(global, async, host);
  }

  bool Connect(const std::string& connectionString = "Provider=Fake",
               const std::string& caption = "Shop") {
    ConnectRequest request;
    request.connectionString = connectionString;
    request.caption = caption;
    request.userName = "me";
    request.password = "secret";
    request.backColor = 0x112233;
    request.foreColor = 0x445566;
    return records->Connect(request);
  }
  bool Run(const std::string& sql) { return records->DoQueryTags(sql, false, newQuery); }
  void RunThreeRows(const std::string& sql = "select") { RunThreeRows(sql, sql); }
  /// Runs SQL with tags; `filled` is what the database gets of it.
  void RunThreeRows(const std::string& sql, const std::string& filled) {
    data.Answer(filled, {MemoryField("id", DataType::Integer), MemoryField("name")},
                {{Value(std::int64_t{1}), Value(std::string("a'b"))},
                 {Value(std::int64_t{2}), Value()},
                 {Value(std::int64_t{3}), Value(std::string("c"))}});
    EXPECT_TRUE(Run(sql));
  }

  HeadlessWindow& W() { return desktop.WindowOf("frmRecords"); }
  std::string Status() { return W().Find<TextBox>("txtStatus").Text(); }
  Color StatusColor() { return W().Find<TextBox>("txtStatus").BackColor(); }
  DataGrid& Grid() { return W().Find<DataGrid>("DataGrid"); }
  bool Shows(const char* control) { return W().VisibleInFact(control); }

  std::unique_ptr<Window> frame = desktop.MakeWindow("frmMDI");
  dlgAsync async{desktop, *frame};
  FakeRecordsHost host;
  std::unique_ptr<frmRecords> records;
};

}  // namespace tessel::test
