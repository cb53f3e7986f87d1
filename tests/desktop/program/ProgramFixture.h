#pragma once

#include <QGuiApplication>
#include <QTest>
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "data/cursor/DataAccessObjects.h"
#include "logic/app/Main.h"
#include "system/PosixFiles.h"
#include "system/ThreadLine.h"
#include "tests/desktop/QtContractHost.h"
#include "tests/desktop/QtUser.h"
#include "tests/support/DataSteps.h"
#include "tests/support/Slowdown.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

/// The whole program on real windows and real databases, in a folder of its own, with the sample
/// database to connect to.
class ProgramFixture : public ::testing::Test {
 protected:
  /// File dialogs change the current folder, here to one that goes with the test.
  ~ProgramFixture() override { std::filesystem::current_path(before_); }
  static void SetUpTestSuite() {
    sampleFolder = new TemporaryFolder;
    const std::string command =
        std::string("python3 '") + TESSEL_SAMPLE_SCRIPT + "' --out '" + Sample() + "' > /dev/null";
    ASSERT_EQ(std::system(command.c_str()), 0);
  }
  static void TearDownTestSuite() {
    delete sampleFolder;
    sampleFolder = nullptr;
  }
  static std::string Sample() { return sampleFolder->File("shop.db"); }
  static std::string SampleConnection() { return "Provider=SQLite;Data Source=" + Sample(); }

  /// Starts the program and connects in its first dialog.
  void Start(const std::string& connectionString = SampleConnection(),
             const std::string& caption = "Shop") {
    ConnectInDialog(connectionString, caption);
    program.Main();
    WaitForKeyboard();
  }
  void WaitForKeyboard() { test::WaitForKeyboard(Frame()); }
  void Connect(const std::string& connectionString, const std::string& caption) {
    if (program.Frame().RecordsWindowCount() == 1)
      host.OnMessage(whichInstance, MessageResult::Yes);
    ConnectInDialog(connectionString, caption);
    host.ChooseMenu(Frame(), "mnuDBConnect");
    WaitForKeyboard();
  }
  void ConnectInDialog(const std::string& connectionString, const std::string& caption) {
    host.OnModal("dlgConnect", [this, connectionString, caption](Window& w) {
      w.Find<TextBox>("txtCnStr").SetText(connectionString);
      w.Find<TextBox>("txtCaption").SetText(caption);
      w.Find<CheckBox>("chkLoadSchemaFromDB").SetValue(loadsSchema);
      host.Click(w, "cmdConnect");
    });
  }
  /// Types SQL as a user would, selects it and presses F5.
  void Run(const std::string& sql) {
    auto& text = Query().Find<RichTextBox>("txtQuery");
    text.SetText(sql);
    text.Select(0, sql.size());
    program.Frame().QueryWindow().FocusText();
    host.PressKey(Query(), key::f5);
    WaitForKeyboard();
  }

  /// What the data layer says when that connection is opened.
  std::string ReasonOfFailure(const std::string& connectionString) {
    const auto connection = data.CreateConnection();
    connection->SetConnectionString(connectionString);
    try {
      OpenNow(*connection);
    } catch (const Error& error) {
      return error.Description();
    }
    return {};
  }

  Window& Frame() { return program.Frame().TheWindow(); }
  Window& Query() { return program.Frame().QueryWindow().TheWindow(); }
  Window& Records(std::size_t n) { return program.Frame().RecordsWindows().at(n)->TheWindow(); }
  /// The status line without its time stamp.
  std::string Status(std::size_t n) {
    const std::string text = Records(n).Find<TextBox>("txtStatus").Text();
    return text.substr(std::min(text.find("]  "), text.size() - 3) + 3);
  }
  DataGrid& Grid(std::size_t n) { return Records(n).Find<DataGrid>("DataGrid"); }

  const std::string whichInstance =
      "Do you want to connect to another database using this instance of Tessel?\n\n"
      "- To execute the same SQL commands on ALL connections at once - click 'Yes'.\n"
      "- For a separate, independent connection using a new instance of Tessel - click 'No'.\n"
      "- To switch to a new connection - click 'Cancel', close the existing Database window and "
      "then "
      "select the 'Connect...' command.\n\n";

  bool loadsSchema = false;  ///< Whether connections read their schema from the database.

  static inline TemporaryFolder* sampleFolder = nullptr;
  const std::filesystem::path before_ = std::filesystem::current_path();
  TemporaryFolder folder;
  QtContractHost host;
  PosixFiles files;
  DataAccessObjects data{host.TheDesktop().Events(), nullptr, RowMemory::OfMachine(), slowdown};
  Program program{Platform{host.TheDesktop(),
                           data,
                           files,
                           folder.Path().string(),
                           folder.File("Tessel"),
                           "1.0",
                           {},
                           nullptr,
                           [] { return std::make_unique<ThreadLine>(); }}};
};

}  // namespace tessel::test
