// The dialogs that build connection strings, opened from the dialog of saved connections.

#include "logic/connections/builders/Builder.h"

#include <tuple>

#include "tests/logic/connections/ConnectFixture.h"

namespace tessel {
namespace {

class BuilderTest : public test::ConnectFixture {
 protected:
  /// Opens the builder behind `button` on `connectionString`; the string it leaves in the box.
  std::string Build(const std::string& button, const std::string& form,
                    const std::string& connectionString, test::DesktopScript::Step step) {
    std::string built;
    desktop.OnModal(form, std::move(step));
    Go([&](Window& w) {
      Fill(w, connectionString, "");
      w.Click(button);
      built = w.Find<TextBox>("txtCnStr").Text();
      w.Click("cmdCancel");
    });
    return built;
  }
  static std::string TextOf(Window& w, const char* name) { return w.Find<TextBox>(name).Text(); }
};

TEST_F(BuilderTest, DriverStringsOpenDsnLessAndKeepTheirBraces) {
  const std::string built = Build("cmdODBC", "dlgCnODBC",
                                  "Driver={SQL Server};Server=s;Database=d;Extra=x", [](Window& w) {
                                    EXPECT_TRUE(w.Find<OptionButton>("optDSNLess").Value());
                                    EXPECT_EQ(w.Find<ComboBox>("cboDriver").Text(), "SQL Server");
                                    EXPECT_FALSE(w.Find<ComboBox>("cboDSN").Enabled());
                                    EXPECT_EQ(w.Find<ComboBox>("cboDSN").BackColor(), 0x8000000FU);
                                    w.Click("cmdOK");
                                  });
  EXPECT_EQ(built, "Driver={SQL Server};Server=s;Database=d");
}

TEST_F(BuilderTest, DsnStringsLeaveOutTheServer) {
  const std::string built =
      Build("cmdODBC", "dlgCnODBC", "DSN=mine;Server=s;UID=u;Pwd=", [](Window& w) {
        EXPECT_TRUE(w.Find<OptionButton>("optDSN").Value());
        EXPECT_FALSE(w.Find<TextBox>("txtServer").Enabled());
        w.Click("cmdOK");
      });
  EXPECT_EQ(built, "DSN=mine;UID=u");
}

TEST_F(BuilderTest, OkWithARequiredFieldEmptyDoesNothing) {
  const std::string built = Build("cmdODBC", "dlgCnODBC", "x=1", [](Window& w) {
    w.Click("cmdOK");
    EXPECT_TRUE(w.Visible());
    w.Click("optDSNLess");
    w.Click("cmdOK");
    EXPECT_TRUE(w.Visible());
    w.Click("cmdCancel");
  });
  EXPECT_EQ(built, "x=1");
}

TEST_F(BuilderTest, OkWithoutTheServerOrTheFileDoesNothing) {
  for (const auto& [button, form, box] : {std::tuple("cmdDBSQLServer", "dlgCnSQLSrv", "txtServer"),
                                          std::tuple("cmdDBAccess", "dlgCnAccess", "txtFile")}) {
    const std::string given = "x=1;UID=u";
    EXPECT_EQ(Build(button, form, given,
                    [](Window& w) {
                      w.Click("cmdOK");
                      EXPECT_TRUE(w.Visible());
                      w.Click("cmdCancel");
                    }),
              given)
        << form;
    EXPECT_NE(Build(button, form, given,
                    [field = box](Window& w) {
                      w.Type(field, "given");
                      w.Click("cmdOK");
                      EXPECT_FALSE(w.Visible());
                    }),
              given)
        << form;
  }
}

TEST_F(BuilderTest, TheDriverIsRequiredAndNotTheServer) {
  const std::string built = Build("cmdODBC", "dlgCnODBC", "DSN=d", [](Window& w) {
    w.Click("optDSNLess");
    w.Type("txtServer", "s");
    w.Click("cmdOK");
    EXPECT_TRUE(w.Visible()) << "the other choice has no driver";
    w.Find<ComboBox>("cboDriver").SetText("Other");
    w.Click("cmdOK");
    EXPECT_FALSE(w.Visible());
  });
  EXPECT_EQ(built, "Driver={Other};Server=s");
}

TEST_F(BuilderTest, TrustedSqlServerStringsRebuildTrusted) {
  const std::string built =
      Build("cmdDBSQLServer", "dlgCnSQLSrv",
            "Provider=SQLOLEDB;Data Source=s;Integrated Security=SSPI", [](Window& w) {
              EXPECT_TRUE(w.Find<CheckBox>("chkTrusted").Value());
              EXPECT_FALSE(w.Find<TextBox>("txtUsername").Enabled());
              w.Click("cmdOK");
            });
  EXPECT_EQ(built, "Provider=SQLOLEDB;Server=s;Trusted_Connection=yes");
}

TEST_F(BuilderTest, TheNetworkLibraryIsItsFirstEightCharacters) {
  const std::string built =
      Build("cmdDBSQLServer", "dlgCnSQLSrv", "Server=s;UID=u;Pwd=p", [](Window& w) {
        EXPECT_EQ(TextOf(w, "txtPassword"), "p");
        w.Find<ComboBox>("cboNetLib").SetText("DBMSSOCN (TCP/IP)");
        w.Click("cmdOK");
      });
  EXPECT_EQ(built, "Provider=SQLOLEDB;Server=s;UID=u;Pwd=p;Network Library=DBMSSOCN");
}

TEST_F(BuilderTest, AccessStringsNameTheJetProviderAndTheFile) {
  const std::string built =
      Build("cmdDBAccess", "dlgCnAccess", "Data Source=/old.mdb", [&](Window& w) {
        EXPECT_EQ(TextOf(w, "txtFile"), "/old.mdb");
        desktop.AnswerFile("/new.mdb");
        w.Click("cmdBrowse");
        w.Click("cmdOK");
      });
  EXPECT_EQ(desktop.FileDialogs().at(0).fileName, "/old.mdb");
  EXPECT_EQ(built, "Provider=Microsoft.Jet.OLEDB.3.51;Data Source=/new.mdb");
}

TEST_F(BuilderTest, GenericStringsHoldFiveKeysInOrder) {
  const std::string built =
      Build("cmdDBGeneric", "dlgCnGeneric",
            "Server=s;Provider=SQLite;Database=d;UID=u;Pwd=;Other=1", [](Window& w) {
              EXPECT_EQ(w.Find<ComboBox>("cboProvider").List(2), "Microsoft.Jet.OLEDB.3.51");
              w.Click("cmdOK");
            });
  EXPECT_EQ(built, "Provider=SQLite;Data Source=s;Initial Catalog=d;User ID=u");
}

TEST_F(BuilderTest, TheNativeProvidersStandBehindTheFourOthers) {
  data.providerNames = {"MariaDB", "MSDASQL*", "PostgreSQL", "SQLite"};
  Build("cmdDBGeneric", "dlgCnGeneric", "", [](Window& w) {
    auto& list = w.Find<ComboBox>("cboProvider");
    std::vector<std::string> names;
    for (int i = 0; i < list.ListCount(); ++i) names.push_back(list.List(i));
    EXPECT_EQ(names, (std::vector<std::string>{"MSDAORA", "MSDASQL", "Microsoft.Jet.OLEDB.3.51",
                                               "SQLOLEDB", "SQLite", "PostgreSQL", "MariaDB"}));
    w.Click("cmdCancel");
  });
}

TEST_F(BuilderTest, AnyProviderNeedsNoField) {
  const std::string built = Build("cmdDBGeneric", "dlgCnGeneric", "Provider=SQLite", [](Window& w) {
    w.Find<ComboBox>("cboProvider").SetText("");
    w.Click("cmdOK");
    EXPECT_FALSE(w.Visible());
  });
  EXPECT_EQ(built, "");
}

TEST_F(BuilderTest, CancelReturnsTheGivenStringByteForByte) {
  const std::string odd = ";;=;Driver={;é ;x";
  for (const auto& [button, form] :
       {std::pair("cmdODBC", "dlgCnODBC"), std::pair("cmdDBSQLServer", "dlgCnSQLSrv"),
        std::pair("cmdDBAccess", "dlgCnAccess"), std::pair("cmdDBGeneric", "dlgCnGeneric"),
        std::pair("cmdOLEDB", "dlgDataLink")})
    EXPECT_EQ(Build(button, form, odd, [](Window& w) { w.Click("cmdCancel"); }), odd) << form;
}

TEST_F(BuilderTest, TheDataLinkTableEditsKeysAndValuesAndTestsThem) {
  const std::string built = Build(
      "cmdOLEDB", "dlgDataLink", "Provider=SQLite;Data Source=a.db;Mode=ReadOnly", [&](Window& w) {
        EXPECT_EQ(w.Find<ListView>("lsvPairs").Count(), 3);
        w.SelectRow("lsvPairs", 1);
        EXPECT_EQ(TextOf(w, "txtValue"), "a.db");
        w.Find<TextBox>("txtValue").SetText("b.db");
        w.Click("cmdSet");
        w.SelectRow("lsvPairs", 2);
        w.Click("cmdRemovePair");
        w.Click("cmdTest");
        desktop.DrainEvents();
        EXPECT_EQ(w.Find<Label>("lblResult").Caption(), "The connection works.");
        w.Click("cmdOK");
      });
  EXPECT_EQ(built, "Provider=SQLite;Data Source=b.db");
}

TEST(EditableBackColorTest, GreysLockedFields) {
  EXPECT_EQ(EditableBackColor(true), 0x8000000FU);
  EXPECT_EQ(EditableBackColor(false), 0x80000005U);
}

}  // namespace
}  // namespace tessel
