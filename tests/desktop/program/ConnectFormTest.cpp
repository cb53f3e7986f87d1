// The form behind "OLE DB..." on real windows and real servers: what it says of a server that does
// not answer as wished, and that it stays usable meanwhile.

#include <QElapsedTimer>
#include <ostream>

#include "contract/desktop/controls/Label.h"
#include "contract/desktop/controls/ListControls.h"
#include "tests/data/servers/Listener.h"
#include "tests/data/servers/TestServers.h"
#include "tests/desktop/program/ProgramFixture.h"

namespace tessel::test {
namespace {

struct FormPlace {
  std::string provider;
  std::function<DatabaseServer&()> server;
  std::string wrongPassword;  ///< What the server says then.
  std::string unknownHost;
  std::string refused;
};

void PrintTo(const FormPlace& place, std::ostream* out) { *out << place.provider; }

std::vector<FormPlace> Places() {
  return {{"PostgreSQL", []() -> DatabaseServer& { return TestServers::Instance().Postgres(); },
           "password authentication failed for user \"tessel\"",
           "could not translate host name \"no.such.host.invalid\"", "Connection refused"},
          {"MariaDB", []() -> DatabaseServer& { return TestServers::Instance().MariaDb(); },
           "Access denied for user 'tessel'", "Unknown server host 'no.such.host.invalid'",
           "Can't connect to server"}};
}

class ConnectFormTest : public ProgramFixture, public ::testing::WithParamInterface<FormPlace> {
 protected:
  /// Opens the form of the parameter's provider, with its login; `step` is what the user does. What
  /// the form leaves in the box.
  std::string InForm(const std::function<void(Window&)>& step) {
    std::string built;
    host.OnModal("dlgConnect", [&](Window& dialog) {
      host.Click(dialog, "cmdOLEDB");
      built = dialog.Find<TextBox>("txtCnStr").Text();
      host.Click(dialog, "cmdCancel");
    });
    host.OnModal("dlgDataLink", [&](Window& form) {
      auto& providers = form.Find<ComboBox>("cboProvider");
      int entry = 0;
      while (providers.List(entry) != GetParam().provider) ++entry;
      host.SelectEntry(form, "cboProvider", entry);
      step(form);
    });
    program.Main();
    return built;
  }
  void FillLogin(Window& form, const std::string& server, int port, const std::string& password) {
    Put(form, "txtServer", server);
    Put(form, "txtPort", std::to_string(port));
    Put(form, "txtUsername", GetParam().server().Login().user);
    Put(form, "txtPassword", password);
  }
  void Put(Window& form, const char* box, const std::string& text) {
    form.Find<TextBox>(box).SetText("");
    host.Type(form, box, text);
  }
  static std::string Said(Window& form) { return form.Find<Label>("lblResult").Caption(); }
  /// Presses the button; what it says in the end.
  std::string Test(Window& form) {
    host.Click(form, "cmdTest");
    EXPECT_TRUE(QTest::qWaitFor([&] { return Said(form) != "Connecting..."; }, 20000));
    return Said(form);
  }
  static bool Says(const std::string& said, const std::string& part) {
    return said.find(part) != std::string::npos;
  }
};

TEST_P(ConnectFormTest, AServerIsTriedUntilItWorks) {
  const ServerLogin& login = GetParam().server().Login();
  const std::string built = InForm([&](Window& form) {
    FillLogin(form, login.host, login.port, "wrong");
    EXPECT_PRED2(Says, Test(form), GetParam().wrongPassword);
    Put(form, "txtPassword", login.password);
    EXPECT_EQ(Said(form), "");
    host.Type(form, "cboDatabase", "s");
    auto& databases = form.Find<ComboBox>("cboDatabase");
    EXPECT_TRUE(QTest::qWaitFor([&] { return databases.ListCount() > 0; }, 20000)) << Said(form);
    int shop = 0;
    while (shop < databases.ListCount() && databases.List(shop) != login.database) ++shop;
    host.SelectEntry(form, "cboDatabase", shop);
    EXPECT_EQ(Test(form), "The connection works.");
    host.Click(form, "cmdOK");
  });
  EXPECT_EQ(built, "Provider=" + GetParam().provider + ";Server=" + login.host +
                       ";Port=" + std::to_string(login.port) + ";User ID=" + login.user +
                       ";Password=" + login.password + ";Database=" + login.database);
  EXPECT_EQ(ReasonOfFailure(built), "");
}

TEST_P(ConnectFormTest, TheServerNamesItsDatabasesWhenTheBoxIsEntered) {
  const ServerLogin& login = GetParam().server().Login();
  InForm([&](Window& form) {
    FillLogin(form, login.host, login.port, login.password);
    host.Type(form, "cboDatabase", "sh");
    auto& databases = form.Find<ComboBox>("cboDatabase");
    EXPECT_TRUE(QTest::qWaitFor([&] { return databases.ListCount() > 1; }, 20000)) << Said(form);
    EXPECT_EQ(databases.Text(), "sh");
    host.Click(form, "cmdCancel");
  });
}

TEST_P(ConnectFormTest, AServerThatCannotBeReachedIsToldInClearWords) {
  const Listener refusing(Listener::Behaviour::Refuse);
  InForm([&](Window& form) {
    FillLogin(form, "127.0.0.1", refusing.Port(), "x");
    EXPECT_PRED2(Says, Test(form), GetParam().refused);
    Put(form, "txtServer", "no.such.host.invalid");
    EXPECT_PRED2(Says, Test(form), GetParam().unknownHost);
    host.Click(form, "cmdCancel");
  });
}

TEST_P(ConnectFormTest, AServerThatHangsLeavesTheFormUsable) {
  const Listener silent(Listener::Behaviour::Silent);
  InForm([&](Window& form) {
    FillLogin(form, "127.0.0.1", silent.Port(), "x");
    host.Click(form, "cmdTest");
    EXPECT_TRUE(silent.WaitForClient(std::chrono::seconds(10)));
    EXPECT_EQ(Said(form), "Connecting...");
    QElapsedTimer time;
    time.start();
    host.Click(form, "cmdTest");
    EXPECT_TRUE(QTest::qWaitFor([&] { return Said(form) == "Cancelled."; }, 10000)) << Said(form);
    EXPECT_LT(time.elapsed(), 2000);
    host.Click(form, "cmdTest");
    host.Type(form, "txtServer", "x");
    EXPECT_EQ(Said(form), "") << "typing ends the test";
    host.Click(form, "cmdTest");
    PressKeyCode(key::escape);
    EXPECT_FALSE(form.Visible());
  });
}

INSTANTIATE_TEST_SUITE_P(Servers, ConnectFormTest, testing::ValuesIn(Places()),
                         [](const auto& info) { return info.param.provider; });

}  // namespace
}  // namespace tessel::test
