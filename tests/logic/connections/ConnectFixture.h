#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "contract/desktop/controls/ListControls.h"
#include "logic/connections/dlgConnect.h"
#include "tests/logic/LogicFixture.h"

namespace tessel::test {

struct OpenedConnection {
  SavedConnection connection;
  std::string userName;
  std::string password;
  bool loadSchemaFromDB = false;
};

/// Stands for the frame: each attempt succeeds unless the test says otherwise.
class FakeOpener : public ConnectionOpener {
 public:
  bool OpenRecordsWindow(const SavedConnection& connection, const std::string& userName,
                         const std::string& password, bool loadSchemaFromDB) override {
    opened.push_back({connection, userName, password, loadSchemaFromDB});
    if (duringConnect) duringConnect();
    return succeeds;
  }
  void FocusQueryWindow() override { ++queryFocused; }
  void TellListNotSaved(const std::string& reason) override { notSaved.push_back(reason); }

  bool succeeds = true;
  std::function<void()> duringConnect;
  std::vector<OpenedConnection> opened;
  std::vector<std::string> notSaved;
  int queryFocused = 0;
};

/// The frame, and what a user does in the list of saved connections.
class ConnectFixture : public LogicFixture {
 protected:
  ConnectFixture() { owner->Show(); }

  using Window = HeadlessWindow;

  /// Shows the dialog; `step` is what the user does in it.
  void Go(DesktopScript::Step step) {
    desktop.OnModal("dlgConnect", std::move(step));
    dlgConnect(global, opener).Go(*owner);
  }

  static ListView& Rows(Window& w) { return w.Find<ListView>("lsvConnections"); }
  [[nodiscard]] static std::vector<std::string> Captions(Window& w) {
    std::vector<std::string> captions;
    for (int i = 0; i < Rows(w).Count(); ++i) captions.push_back(Rows(w).Row(i).text);
    return captions;
  }
  static void Fill(Window& w, const std::string& connectionString, const std::string& caption) {
    w.Find<TextBox>("txtCnStr").SetText(connectionString);
    w.Find<TextBox>("txtCaption").SetText(caption);
  }
  void WriteList(const std::vector<SavedConnection>& list) {
    SettingsFile settings(global);
    settings.Load();
    settings.Save(list);
  }
  std::vector<SavedConnection> Saved() { return SettingsFile(global).Load(); }

  std::unique_ptr<tessel::Window> owner = desktop.MakeWindow("frmMDI");
  FakeOpener opener;
};

}  // namespace tessel::test
