#pragma once

#include <string>
#include <vector>

#include "logic/app/Main.h"
#include "tests/logic/LogicFixture.h"

namespace tessel::test {

/// The whole program on the headless desktop, its databases in memory.
class FrameFixture : public LogicFixture {
 protected:
  using Window = HeadlessWindow;

  /// Starts the program; the first dialog is cancelled unless the test connects in it.
  void Start() {
    desktop.OnModal("dlgConnect", [](Window& w) { w.Click("cmdCancel"); });
    program.Main();
  }
  /// Opens a records window through the menu and the dialog.
  void Connect(const std::string& connectionString) {
    if (frame().RecordsWindowCount() == 1)
      desktop.ExpectMessage(connectQuestion, MessageResult::Yes);
    desktop.OnModal("dlgConnect", [connectionString](Window& w) {
      w.Find<TextBox>("txtCnStr").SetText(connectionString);
      w.Find<TextBox>("txtCaption").SetText(connectionString + " caption");
      w.Click("cmdConnect");
    });
    mdi().ChooseMenu("mnuDBConnect");
  }
  void Select(const std::string& sql) {
    auto& box = query().Find<RichTextBox>("txtQuery");
    box.SetText(sql);
    box.Select(0, sql.size());
  }
  frmMDI& frame() { return program.Frame(); }
  Window& mdi() { return desktop.WindowOf("frmMDI"); }
  Window& query() { return desktop.WindowOf("frmMain"); }
  std::vector<std::string> Executed(const std::string& connectionString) {
    std::vector<std::string> texts;
    for (const auto& command : data.Log().executed)
      if (command.connectionString == connectionString) texts.push_back(command.sql);
    return texts;
  }

  const std::string connectQuestion =
      "Do you want to connect to another database using this instance of Tessel?\r\n\r\n"
      "- To execute the same SQL commands on ALL connections at once - click 'Yes'.\r\n"
      "- For a separate, independent connection using a new instance of Tessel - click 'No'.\r\n"
      "- To switch to a new connection - click 'Cancel', close the existing Database window and "
      "then select the "
      "'Connect...' command.\r\n\r\n";

  Program program{Platform{desktop,
                           data,
                           files,
                           folder.Path().string(),
                           folder.File("Tessel"),
                           "1.0",
                           nullptr,
                           nullptr,
                           {},
                           nullptr,
                           &programs}};
};

}  // namespace tessel::test
