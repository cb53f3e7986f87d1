// The window behind "OLE DB...": the fields of each provider, the test, the list of databases, and
// the keyring.

#include "logic/connections/link/dlgDataLink.h"

#include "tests/logic/connections/ConnectFixture.h"

namespace tessel {
namespace {

class DataLinkFormTest : public test::ConnectFixture {
 protected:
  DataLinkFormTest() { data.providerNames = {"MariaDB", "MSDASQL*", "PostgreSQL", "SQLite"}; }

  std::string Edit(const std::string& connectionString, test::DesktopScript::Step step,
                   const TypedLogin& login = {}) {
    desktop.OnModal("dlgDataLink", std::move(step));
    return PromptDataLink(global, *owner, connectionString, login);
  }
  static void Choose(Window& w, const std::string& provider) {
    auto& box = w.Find<ComboBox>("cboProvider");
    for (int i = 0; i < box.ListCount(); ++i)
      if (box.List(i) == provider) return w.SelectItem("cboProvider", i);
    FAIL() << provider << " is not offered";
  }
  static std::string Text(Window& w, const char* name) { return w.Find<TextBox>(name).Text(); }
  static std::string Said(Window& w) { return w.Find<Label>("lblResult").Caption(); }
  static std::string Keyring(Window& w) { return w.Find<Label>("lblKeyring").Caption(); }
  static bool Shows(Window& w, const char* name) { return w.Find<Control>(name).Visible(); }
  static std::vector<std::string> Entries(ListControl& list) {
    std::vector<std::string> entries;
    for (int i = 0; i < list.ListCount(); ++i) entries.push_back(list.List(i));
    return entries;
  }

  const std::string server = "Provider=PostgreSQL;Server=s;User ID=u";
  const std::string kept = server + ";Password From=Keyring";
  const std::string name = "provider=postgresql;server=s;user id=u";
};

TEST_F(DataLinkFormTest, OffersTheNativeProvidersFirstThenOdbc) {
  Edit("", [](Window& w) {
    EXPECT_EQ(Entries(w.Find<ComboBox>("cboProvider")),
              (std::vector<std::string>{"SQLite", "PostgreSQL", "MariaDB", "ODBC"}));
    EXPECT_EQ(w.Find<ComboBox>("cboProvider").Text(), "SQLite");
    w.Click("cmdCancel");
  });
}

TEST_F(DataLinkFormTest, ShowsTheFieldsOfTheProvider) {
  Edit("", [](Window& w) {
    EXPECT_TRUE(Shows(w, "txtFile") && Shows(w, "cmdBrowse") && Shows(w, "chkCreate"));
    EXPECT_FALSE(Shows(w, "txtServer") || Shows(w, "chkKeep") || Shows(w, "cboDSN"));
    Choose(w, "MariaDB");
    EXPECT_FALSE(Shows(w, "txtFile") || Shows(w, "cboDSN"));
    EXPECT_TRUE(Shows(w, "txtServer") && Shows(w, "chkKeep") && Shows(w, "chkReadOnly"));
    EXPECT_EQ(Entries(w.Find<ComboBox>("cboSSL")),
              (std::vector<std::string>{"Default", "Disabled", "Required", "Verify Full"}));
    Choose(w, "ODBC");
    EXPECT_TRUE(Shows(w, "cboDSN") && Shows(w, "cboDriver") && Shows(w, "txtPassword"));
    EXPECT_FALSE(Shows(w, "cboSSL") || Shows(w, "chkReadOnly") || Shows(w, "lblNoFields"));
    w.Find<ComboBox>("cboProvider").SetText("Mine");
    EXPECT_TRUE(Shows(w, "lblNoFields"));
    EXPECT_FALSE(Shows(w, "txtServer") || Shows(w, "txtFile"));
    w.Click("cmdCancel");
  });
}

TEST_F(DataLinkFormTest, AFileIsBrowsedForAndMadeIfMissing) {
  const std::string built = Edit("", [this](Window& w) {
    desktop.AnswerFile("/there/shop.db");
    w.Click("cmdBrowse");
    EXPECT_FALSE(desktop.FileDialogs().at(0).save);
    w.Click("chkCreate");
    desktop.AnswerFile("/there/a;b.db");
    w.Click("cmdBrowse");
    EXPECT_TRUE(desktop.FileDialogs().at(1).save);
    EXPECT_EQ(desktop.FileDialogs().at(1).flags & fileDialogFlag::overwritePrompt, 0);
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, "Provider=SQLite;Data Source={/there/a;b.db};Mode=ReadWriteCreate");
}

TEST_F(DataLinkFormTest, WhatIsOnlyReadIsNotMade) {
  const std::string built =
      Edit("Provider=SQLite;Data Source=a;Mode=ReadWriteCreate", [](Window& w) {
        EXPECT_TRUE(w.Find<CheckBox>("chkCreate").Value());
        w.Click("chkReadOnly");
        EXPECT_FALSE(w.Find<CheckBox>("chkCreate").Value());
        w.Click("cmdOK");
      });
  EXPECT_EQ(built, "Provider=SQLite;Data Source=a;Mode=ReadOnly");
}

TEST_F(DataLinkFormTest, AServerIsDescribedByItsFields) {
  const std::string built = Edit("", [](Window& w) {
    Choose(w, "PostgreSQL");
    w.Type("txtServer", "db.example.com");
    w.Type("txtPort", "5433");
    w.Type("txtUsername", "me");
    w.Type("txtPassword", "a;b}c='\"");
    w.Type("cboDatabase", "shop");
    w.SelectItem("cboSSL", 4);
    w.Click("chkReadOnly");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, "Provider=PostgreSQL;Server=db.example.com;Port=5433;User ID=me;"
                   "Password={a;b}}c='\"};Database=shop;SSL Mode=Require;Mode=ReadOnly");
  Edit(built, [](Window& w) {
    EXPECT_EQ(Text(w, "txtPassword"), "a;b}c='\"");
    EXPECT_EQ(w.Find<ComboBox>("cboSSL").Text(), "Require");
    EXPECT_TRUE(w.Find<CheckBox>("chkReadOnly").Value());
    w.Click("cmdCancel");
  });
}

TEST_F(DataLinkFormTest, AnotherProviderTakesTheValuesAlong) {
  const std::string built =
      Edit("Provider=PostgreSQL;host=s;uid=u;X=1;SSL Mode=Verify CA", [](Window& w) {
        Choose(w, "SQLite");
        EXPECT_EQ(w.Find<ListView>("lsvPairs").Count(), 2);
        Choose(w, "MariaDB");
        w.Click("cmdOK");
      });
  EXPECT_EQ(built, "Provider=MariaDB;X=1;Server=s;User ID=u;SSL Mode=Verify Full");
}

TEST_F(DataLinkFormTest, OdbcNeedsNoProviderAndADriverStandsInBraces) {
  data.odbcDrivers = {"PostgreSQL Unicode"};
  const std::string built = Edit("", [](Window& w) {
    Choose(w, "ODBC");
    w.SelectItem("cboDriver", 0);
    w.Type("txtServer", "s");
    w.Type("txtUsername", "u");
    w.Type("txtPassword", "p");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, "Driver={PostgreSQL Unicode};Server=s;UID=u;PWD=p");
}

TEST_F(DataLinkFormTest, OkTakesAKeyThatWasTypedAndNotSet) {
  const std::string built = Edit("Provider=SQLite;Data Source=a", [](Window& w) {
    w.Type("txtKey", "Timeout");
    w.Type("txtValue", "3");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, "Provider=SQLite;Data Source=a;Timeout=3");
}

TEST_F(DataLinkFormTest, ARemovedKeyStaysAway) {
  const std::string built = Edit("Provider=SQLite;Data Source=a;Timeout=3", [](Window& w) {
    w.SelectRow("lsvPairs", 2);
    w.Click("cmdRemovePair");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, "Provider=SQLite;Data Source=a");
}

TEST_F(DataLinkFormTest, BothPagesShowTheSame) {
  Edit("Provider=MariaDB;Server=s", [](Window& w) {
    w.Type("txtPort", "1");
    EXPECT_EQ(w.Find<ListView>("lsvPairs").Row(2).text, "Port");
    w.Type("txtKey", "Server");
    w.Type("txtValue", "t");
    w.Click("cmdSet");
    EXPECT_EQ(Text(w, "txtServer"), "t");
    w.Click("cmdCancel");
  });
}

// --- the test ------------------------------------------------------------------------------------

TEST_F(DataLinkFormTest, TheTestGoesOnInTheBackgroundAndIsCancelled) {
  data.ServerOf(server).holdConnecting = true;
  Edit(server, [this](Window& w) {
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "Connecting...");
    EXPECT_EQ(w.Find<Button>("cmdTest").Caption(), "S&top");
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "Cancelled.");
    EXPECT_EQ(w.Find<Button>("cmdTest").Caption(), "&Test");
    w.Click("cmdCancel");
  });
  EXPECT_EQ(data.Log().openSessions, 0);
}

TEST_F(DataLinkFormTest, TheTestSaysWhatTheServerSays) {
  data.ServerOf(server).openFailure = MemoryError("password authentication failed");
  Edit(server, [this](Window& w) {
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "password authentication failed");
    data.ServerOf(server + ";Password=x").defaultDatabase = "d";
    w.Type("txtPassword", "x");
    EXPECT_EQ(Said(w), "") << "what was said goes for another password";
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "The connection works.");
    w.Click("cmdCancel");
  });
}

TEST_F(DataLinkFormTest, AChangeEndsATestThatIsUnderWay) {
  data.ServerOf(server).holdConnecting = true;
  Edit(server, [this](Window& w) {
    w.Click("cmdTest");
    w.Type("txtPort", "1");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "");
    EXPECT_EQ(w.Find<Button>("cmdTest").Caption(), "&Test");
    w.Click("cmdCancel");
  });
}

TEST_F(DataLinkFormTest, ClosingEndsATestThatIsUnderWay) {
  data.ServerOf(server).holdConnecting = true;
  Edit(server, [this](Window& w) {
    w.Click("cmdTest");
    desktop.DrainEvents();
    w.PressKey(key::escape);
    EXPECT_FALSE(w.Visible());
  });
  desktop.DrainEvents();
  EXPECT_EQ(data.Log().openSessions, 0);
}

TEST_F(DataLinkFormTest, TheTestUsesTheLoginTypedBesideTheString) {
  Edit(server,
       [this](Window& w) {
         w.Click("cmdTest");
         desktop.DrainEvents();
         w.Click("cmdCancel");
       },
       {"beside", "secret"});
  EXPECT_EQ(data.Log().opened.back().user, "beside");
  EXPECT_EQ(data.Log().opened.back().password, "secret");
}

TEST_F(DataLinkFormTest, TheServerNamesItsDatabasesWhenTheBoxIsEntered) {
  data.catalogs = {"postgres", "shop"};
  Edit(server, [this](Window& w) {
    w.Find<ComboBox>("cboDatabase").SetFocus();
    w.Type("cboDatabase", "sh");
    desktop.DrainEvents();
    EXPECT_EQ(Entries(w.Find<ComboBox>("cboDatabase")),
              (std::vector<std::string>{"postgres", "shop"}));
    EXPECT_EQ(w.Find<ComboBox>("cboDatabase").Text(), "sh") << "what was typed stays";
    w.Click("cmdOK");
  });
}

TEST_F(DataLinkFormTest, AListOfDatabasesThatDoesNotComeHoldsNothingUp) {
  data.ServerOf(server + ";Database=postgres").openFailure = MemoryError("refused");
  const std::string built = Edit(server, [this](Window& w) {
    w.Find<ComboBox>("cboDatabase").SetFocus();
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "There is no list of databases: refused");
    w.Type("cboDatabase", "shop");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, server + ";Database=shop");
}

// --- the keyring ---------------------------------------------------------------------------------

TEST_F(DataLinkFormTest, APasswordGoesToTheKeyringAndAWordIntoTheString) {
  const std::string built = Edit(server + ";Password=old", [this](Window& w) {
    desktop.DrainEvents();
    EXPECT_TRUE(w.Find<CheckBox>("chkKeep").Enabled());
    EXPECT_FALSE(w.Find<CheckBox>("chkKeep").Value()) << "it is the user's choice";
    w.Click("chkKeep");
    w.Find<TextBox>("txtPassword").SetText("");
    w.Type("txtPassword", "s;e}c");
    w.Click("cmdOK");
    desktop.DrainEvents();
  });
  EXPECT_EQ(built, kept);
  EXPECT_EQ(keyring.secrets, (std::map<std::string, std::string>{{name, "s;e}c"}}));
}

TEST_F(DataLinkFormTest, AKeptPasswordFillsTheBoxAndTheTestUsesIt) {
  keyring.secrets[name] = "secret";
  keyring.hold = true;
  const std::string built = Edit(kept, [this](Window& w) {
    EXPECT_EQ(Keyring(w), "Waiting for the desktop's keyring...");
    keyring.Resume();
    desktop.DrainEvents();
    EXPECT_TRUE(w.Find<CheckBox>("chkKeep").Value());
    EXPECT_EQ(Text(w, "txtPassword"), "secret");
    EXPECT_EQ(Keyring(w), "");
    w.Click("cmdTest");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "The connection works.");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, kept);
  EXPECT_EQ(data.Log().opened.back().password, "secret");
}

TEST_F(DataLinkFormTest, WithoutAKeyringTheBoxIsGreyedWithTheReason) {
  keyring.absent = "No keyring answers.";
  Edit(server, [this](Window& w) {
    desktop.DrainEvents();
    EXPECT_FALSE(w.Find<CheckBox>("chkKeep").Enabled());
    EXPECT_EQ(Keyring(w), "No keyring answers.");
    EXPECT_TRUE(Shows(w, "lblKeyring"));
    Choose(w, "SQLite");
    EXPECT_FALSE(Shows(w, "lblKeyring"));
    w.Click("cmdCancel");
  });
}

TEST_F(DataLinkFormTest, AStringOfAnotherMachineAsksAndItsBoxCanBeCleared) {
  keyring.absent = keyring.failure = "No keyring answers.";
  const std::string built = Edit(kept, [this](Window& w) {
    desktop.DrainEvents();
    EXPECT_TRUE(w.Find<CheckBox>("chkKeep").Enabled());
    w.Type("txtPassword", "typed");
    w.Click("chkKeep");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, server + ";Password=typed");
}

TEST_F(DataLinkFormTest, ARefusedKeyringLosesNothing) {
  keyring.failure = "The keyring stayed locked.";
  const std::string built = Edit(server, [this](Window& w) {
    w.Click("chkKeep");
    w.Type("txtPassword", "typed");
    w.Click("cmdOK");
    desktop.DrainEvents();
    EXPECT_TRUE(w.Visible());
    EXPECT_EQ(Said(w), "The password is not kept: The keyring stayed locked.");
    EXPECT_EQ(Text(w, "txtPassword"), "typed");
    EXPECT_TRUE(w.Find<Button>("cmdOK").Enabled());
    w.Click("chkKeep");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, server + ";Password=typed");
  EXPECT_TRUE(keyring.secrets.empty());
}

TEST_F(DataLinkFormTest, ASlowKeyringHoldsNothingUp) {
  keyring.secrets[name] = "secret";
  keyring.hold = true;
  Edit(kept, [this](Window& w) {
    desktop.DrainEvents();
    w.Type("txtPassword", "typed");
    keyring.Resume();
    desktop.DrainEvents();
    EXPECT_EQ(Text(w, "txtPassword"), "typed") << "what was typed meanwhile stays";
    keyring.hold = true;
    w.Click("cmdOK");
    desktop.DrainEvents();
    EXPECT_EQ(Said(w), "Handing the password to the keyring...");
    w.Click("cmdCancel");
    EXPECT_FALSE(w.Visible());
  });
  keyring.Resume();
  desktop.DrainEvents();
}

TEST_F(DataLinkFormTest, APasswordOfTheKeyringDoesNotGetIntoTheStringByAClearedBox) {
  keyring.secrets[name] = "secret";
  const std::string built = Edit(kept, [this](Window& w) {
    desktop.DrainEvents();
    w.Click("chkKeep");
    EXPECT_EQ(Text(w, "txtPassword"), "");
    w.Click("cmdOK");
  });
  EXPECT_EQ(built, server);
}

}  // namespace
}  // namespace tessel
