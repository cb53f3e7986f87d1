// Connecting with a string that says where its password is: the keyring, or else the user.

#include "logic/connections/password/dlgPassword.h"

#include "tests/logic/connections/ConnectFixture.h"

namespace tessel {
namespace {

class PasswordTest : public test::ConnectFixture {
 protected:
  /// Presses Connect on the string that asks for its password.
  void Connect(test::DesktopScript::Step before = {}) {
    Go([this, before](Window& w) {
      Fill(w, kept, "");
      if (before) before(w);
      w.Click("cmdConnect");
      if (w.Loaded() && w.Visible()) w.Click("cmdCancel");
    });
  }
  static std::string State(Window& w) { return w.Find<Label>("lblState").Caption(); }

  const std::string kept = "Provider=PostgreSQL;Server=s;User ID=u;Password From=Keyring";
  const std::string name = "provider=postgresql;server=s;user id=u";
};

TEST_F(PasswordTest, TheKeyringsPasswordConnectsWithoutAQuestion) {
  keyring.secrets[name] = "secret";
  Connect();
  ASSERT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(opener.opened[0].password, "secret");
  EXPECT_EQ(opener.opened[0].connection.connectionString, kept);
  EXPECT_EQ(Saved().at(0).connectionString, kept);
  EXPECT_EQ(Content("Tessel.ini.xml").find("secret"), std::string::npos);
}

TEST_F(PasswordTest, AnotherMachineAsksAndMayKeepTheAnswer) {
  desktop.OnModal("dlgPassword", [this](Window& w) {
    desktop.DrainEvents();
    EXPECT_EQ(w.Find<Label>("lblLogin").Caption(), "Password of u at s (PostgreSQL)");
    EXPECT_EQ(State(w), "The keyring gives no password for it. Please type it.");
    w.Type("txtPassword", "typed");
    w.PressKey(key::enter);
    desktop.DrainEvents();
  });
  Connect();
  EXPECT_EQ(opener.opened.at(0).password, "typed");
  EXPECT_EQ(keyring.secrets[name], "typed");
}

TEST_F(PasswordTest, WithoutAKeyringTheUserIsAsked) {
  keyring.absent = keyring.failure = "No keyring answers.";
  desktop.OnModal("dlgPassword", [this](Window& w) {
    desktop.DrainEvents();
    EXPECT_EQ(State(w), "No keyring answers. Please type the password.");
    w.Type("txtPassword", "typed");
    w.Click("cmdOK");
    desktop.DrainEvents();
    EXPECT_EQ(State(w),
              "The password is not kept: No keyring answers. Clear the box to connect without.");
    w.Click("chkKeep");
    w.Click("cmdOK");
  });
  Connect();
  EXPECT_EQ(opener.opened.at(0).password, "typed");
}

TEST_F(PasswordTest, ASlowKeyringLetsTheUserTypeOrCancel) {
  keyring.hold = true;
  keyring.secrets[name] = "secret";
  desktop.OnModal("dlgPassword", [this](Window& w) {
    desktop.DrainEvents();
    w.Type("txtPassword", "typed");
    keyring.Resume();
    desktop.DrainEvents();
    EXPECT_TRUE(w.Visible()) << "what is being typed is not taken away";
    w.Click("chkKeep");
    w.Click("cmdOK");
  });
  Connect();
  EXPECT_EQ(opener.opened.at(0).password, "typed");
  keyring.hold = true;
  desktop.OnModal("dlgPassword", [](Window& w) { w.PressKey(key::escape); });
  Connect();
  EXPECT_EQ(opener.opened.size(), 1U) << "a cancel does not connect";
  keyring.Resume();
  desktop.DrainEvents();
}

TEST_F(PasswordTest, AfterAConnectThatFailedTheUserIsAskedForABetterOne) {
  keyring.secrets[name] = "old";
  opener.succeeds = false;
  desktop.OnModal("dlgConnect", [this](Window& w) {
    Fill(w, kept, "");
    w.Click("cmdConnect");
  });
  desktop.OnModal("dlgPassword", [this](Window& w) {
    desktop.DrainEvents();
    EXPECT_EQ(State(w), "It did not connect with the password of the keyring.");
    EXPECT_EQ(w.Find<TextBox>("txtPassword").Text(), "old");
    w.Find<TextBox>("txtPassword").SetText("new");
    opener.succeeds = true;
    w.Click("cmdOK");
    desktop.DrainEvents();
  });
  desktop.OnModal("dlgConnect", [](Window& w) { w.Click("cmdConnect"); });
  dlgConnect(global, opener).Go(*owner);
  ASSERT_EQ(opener.opened.size(), 2U);
  EXPECT_EQ(opener.opened[1].password, "new");
  EXPECT_EQ(keyring.secrets[name], "new");
}

TEST_F(PasswordTest, APasswordTypedBesideTheStringAsksNobody) {
  keyring.secrets[name] = "secret";
  Connect([](Window& w) { w.Type("txtPassword", "beside"); });
  EXPECT_EQ(opener.opened.at(0).password, "beside");
  EXPECT_EQ(keyring.secrets[name], "secret");
}

}  // namespace
}  // namespace tessel
