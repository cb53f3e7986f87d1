#include "logic/connections/dlgConnect.h"

#include "tests/logic/connections/ConnectFixture.h"

namespace tessel {
namespace {

class dlgConnectTest : public test::ConnectFixture {};

TEST_F(dlgConnectTest, AFirstRunHoldsOnlyTheNewRowAndTheFirstConnectWritesTheFile) {
  Go([](Window& w) {
    EXPECT_EQ(w.Caption(), "Connect to Database");
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)"}));
    EXPECT_EQ(Rows(w).SelectedIndex(), 0);
    Fill(w, "Provider=X", "Mine");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(),
            (std::vector<SavedConnection>{{"Provider=X", "Mine", 0x80000005, 0x80000008}}));
  EXPECT_EQ(opener.queryFocused, 1);
}

TEST_F(dlgConnectTest, ALineSaysWhatToDoNext) {
  const auto hint = [](Window& w) { return w.Find<Label>("lblHint").Caption(); };
  Go([&](Window& w) {
    EXPECT_EQ(hint(w),
              "No connection is saved yet: press \"OLE DB...\" to build one, then Connect.");
    w.Click("cmdCancel");
  });
  WriteList({{"DSN=a", "A", 0x0000FF, 0xFF0000}});
  Go([&](Window& w) {
    EXPECT_EQ(hint(w), "Choose a connection below, or press \"OLE DB...\" to build one.");
    EXPECT_EQ(Rows(w).SelectedIndex(), 0) << "\"(new)\" is selected";
    w.Click("cmdCancel");
  });
}

TEST_F(dlgConnectTest, EveryBuilderAndConnectHaveALetter) {
  for (const auto& [letter, form] :
       {std::pair('L', "dlgDataLink"), std::pair('O', "dlgCnODBC"), std::pair('A', "dlgCnAccess"),
        std::pair('R', "dlgCnSQLSrv"), std::pair('H', "dlgCnGeneric")}) {
    desktop.OnModal(form, [](Window& w) { w.PressKey(key::escape); });
    Go([key = letter](Window& w) {
      w.PressKey(key, shiftState::alt);
      w.PressKey(key::escape);
    });
  }
  Go([](Window& w) {
    Fill(w, "DSN=a", "");
    w.PressKey('T', shiftState::alt);
  });
  EXPECT_EQ(opener.opened.size(), 1U);
}

TEST_F(dlgConnectTest, TheOlderFileGivesRowsWithEmptyCaptionsAndDefaultColours) {
  folder.Write("Tessel.ini", "DSN=a\n\nDSN=b\nDSN=c\n");
  Go([](Window& w) {
    ASSERT_EQ(Rows(w).Count(), 4);
    for (int i = 1; i < 4; ++i) {
      EXPECT_EQ(Rows(w).Row(i).text, "");
      EXPECT_EQ(Rows(w).Row(i).tag, 0x80000005);
      EXPECT_EQ(Rows(w).Row(i).foreColor, 0x80000008U);
    }
    EXPECT_EQ(Rows(w).Row(2).subItems[0], "DSN=b");
    w.Click("cmdCancel");
  });
}

TEST_F(dlgConnectTest, ClickingARowFillsTheBoxesAndTheColourSample) {
  WriteList({{"DSN=a", "A", 0x0000FF, 0xFF0000}});
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    EXPECT_EQ(w.Find<TextBox>("txtCaption").Text(), "A");
    EXPECT_EQ(w.Find<TextBox>("txtCnStr").Text(), "DSN=a");
    EXPECT_EQ(w.Find<Label>("labColor").BackColor(), 0x0000FFU);
    EXPECT_EQ(w.Find<Label>("labColor").ForeColor(), 0xFF0000U);
    w.SelectRow("lsvConnections", 0);
    EXPECT_EQ(w.Find<TextBox>("txtCaption").Text(), "");
    EXPECT_EQ(w.Find<TextBox>("txtCnStr").Text(), "");
    w.Click("cmdCancel");
  });
}

TEST_F(dlgConnectTest, AnEmptyConnectionStringIsRefused) {
  desktop.ExpectMessage("Please specify a connection string.", MessageResult::Ok,
                        [](const Message& message) {
                          EXPECT_EQ(message.icon, MessageIcon::Exclamation);
                          EXPECT_TRUE(message.help);
                        });
  Go([](Window& w) {
    w.Click("cmdConnect");
    EXPECT_TRUE(w.Visible());
    w.Click("cmdCancel");
  });
  EXPECT_TRUE(opener.opened.empty());
}

TEST_F(dlgConnectTest, ConnectPassesEverythingTyped) {
  Go([](Window& w) {
    Fill(w, "Provider=X", "Mine");
    w.Type("txtUsername", "me");
    w.Type("txtPassword", "secret");
    w.Find<CheckBox>("chkLoadSchemaFromDB").SetValue(true);
    w.Find<Label>("labColor").SetBackColor(0x112233);
    w.Click("cmdConnect");
  });
  ASSERT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(opener.opened[0].connection,
            (SavedConnection{"Provider=X", "Mine", 0x112233, 0x80000008}));
  EXPECT_EQ(opener.opened[0].userName, "me");
  EXPECT_EQ(opener.opened[0].password, "secret");
  EXPECT_TRUE(opener.opened[0].loadSchemaFromDB);
  EXPECT_EQ(Content("Tessel.ini.xml").find("secret"), std::string::npos);
}

TEST_F(dlgConnectTest, TheDialogIsHiddenWhileItConnects) {
  opener.duringConnect = [this] {
    EXPECT_FALSE(desktop.WindowOf("dlgConnect").Visible());
    EXPECT_TRUE(desktop.WindowOf("dlgConnect").Loaded());
  };
  Go([](Window& w) {
    Fill(w, "Provider=X", "");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(opener.opened.size(), 1U);
}

TEST_F(dlgConnectTest, ANewConnectionWithAnEmptyCaptionIsAddedWithoutAMessage) {
  WriteList({{"DSN=a", ""}});
  Go([](Window& w) {
    Fill(w, "DSN=b", "");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=a", ""}, {"DSN=b", ""}}));
  EXPECT_TRUE(desktop.Messages().empty());
}

TEST_F(dlgConnectTest, ACaptionSpelledLikeTheNewRowIsAnOrdinaryCaption) {
  desktop.ExpectMessage("Note: The caption '(new)' has already been used.", MessageResult::Ok);
  Go([](Window& w) {
    Fill(w, "DSN=b", "(new)");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=b", "(new)"}}));
}

TEST_F(dlgConnectTest, EmptyingTheCaptionOfASavedEntryEmptiesItInTheFile) {
  WriteList({{"DSN=a", "A"}});
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    w.Find<TextBox>("txtCaption").SetText("");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=a", ""}}));
}

TEST_F(dlgConnectTest, AChangedStringUnderTheSameCaptionUpdatesTheEntryAfterAQuestion) {
  WriteList({{"DSN=a", "A"}, {"DSN=b", "B"}});
  desktop.ExpectMessage("The connection string for 'A' will be updated.", MessageResult::Ok,
                        [](const Message& message) {
                          EXPECT_EQ(message.buttons, MessageButtons::OkCancel);
                          EXPECT_EQ(message.icon, MessageIcon::Information);
                        });
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    w.Find<TextBox>("txtCnStr").SetText("DSN=changed");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=changed", "A"}, {"DSN=b", "B"}}));
}

TEST_F(dlgConnectTest, DecliningTheUpdateStaysInTheDialog) {
  WriteList({{"DSN=a", "A"}});
  desktop.ExpectMessage("The connection string for 'A' will be updated.", MessageResult::Cancel);
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    w.Find<TextBox>("txtCnStr").SetText("DSN=changed");
    w.Click("cmdConnect");
    EXPECT_TRUE(w.Visible());
    w.Click("cmdCancel");
  });
  EXPECT_TRUE(opener.opened.empty());
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=a", "A"}}));
}

TEST_F(dlgConnectTest, AChangedCaptionUnderTheSameStringRenamesTheEntry) {
  WriteList({{"DSN=a", "A"}});
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    w.Find<TextBox>("txtCaption").SetText("Renamed");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=a", "Renamed"}}));
}

TEST_F(dlgConnectTest, BothChangedAddsANewEntryAndKeepsTheOld) {
  WriteList({{"DSN=a", "A"}});
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    Fill(w, "DSN=b", "B");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(), (std::vector<SavedConnection>{{"DSN=a", "A"}, {"DSN=b", "B"}}));
}

TEST_F(dlgConnectTest, ACaptionAlreadyUsedIsAskedAboutWhateverItsCase) {
  WriteList({{"DSN=a", "Shop"}});
  desktop.ExpectMessage("Note: The caption 'SHOP' has already been used.", MessageResult::Cancel);
  desktop.ExpectMessage("Note: The caption 'SHOP' has already been used.", MessageResult::Ok);
  Go([](Window& w) {
    Fill(w, "DSN=b", "SHOP");
    w.Click("cmdConnect");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(Saved().size(), 2U);
}

TEST_F(dlgConnectTest, AFailedConnectionBringsTheDialogBackAsItWas) {
  opener.succeeds = false;
  bool checkedAtFirst = false;
  desktop.OnModal("dlgConnect", [&](Window& w) {
    checkedAtFirst = w.Find<CheckBox>("chkLoadSchemaFromDB").Value();
    Fill(w, "DSN=b", "B");
    w.Type("txtUsername", "me");
    w.Type("txtPassword", "secret");
    w.Click("chkLoadSchemaFromDB");
    w.Find<Label>("labColor").SetBackColor(0x123456);
    w.Find<Label>("labColor").SetForeColor(0x654321);
    w.Click("cmdConnect");
  });
  Go([&](Window& w) {
    EXPECT_EQ(w.Find<TextBox>("txtCnStr").Text(), "DSN=b");
    EXPECT_EQ(w.Find<TextBox>("txtCaption").Text(), "B");
    EXPECT_EQ(w.Find<TextBox>("txtUsername").Text(), "me");
    EXPECT_EQ(w.Find<TextBox>("txtPassword").Text(), "secret");
    EXPECT_NE(w.Find<CheckBox>("chkLoadSchemaFromDB").Value(), checkedAtFirst);
    EXPECT_EQ(w.Find<Label>("labColor").BackColor(), 0x123456U);
    EXPECT_EQ(w.Find<Label>("labColor").ForeColor(), 0x654321U);
    w.Click("cmdCancel");
  });
  EXPECT_FALSE(files.FileExists(global.SettingsFilePath()));
}

TEST_F(dlgConnectTest, RemovingMovingAndReassigningThenCancelLeavesTheFile) {
  WriteList({{"DSN=a", "A"}, {"DSN=b", "B"}, {"DSN=c", "C"}});
  const std::string before = Content("Tessel.ini.xml");
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    w.Click("cmdMoveDown");
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "B", "A", "C"}));
    EXPECT_EQ(Rows(w).SelectedIndex(), 2);
    w.Click("cmdRemove");
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "B", "C"}));
    EXPECT_EQ(w.Find<TextBox>("txtCaption").Text(), "C");
    Fill(w, "DSN=x", "X");
    w.Click("cmdReassign");
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "B", "X"}));
    w.Click("cmdCancel");
  });
  EXPECT_EQ(Content("Tessel.ini.xml"), before);
}

TEST_F(dlgConnectTest, TheNewRowCannotBeReassignedOrRemovedButMoves) {
  WriteList({{"DSN=a", "A"}});
  Go([](Window& w) {
    Rows(w).SetFocus();
    Fill(w, "DSN=x", "X");
    w.Click("cmdReassign");
    w.Click("cmdRemove");
    w.Find<ListView>("lsvConnections").SetFocus();
    w.PressKey(key::del);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "A"}));
    EXPECT_EQ(Rows(w).Row(0).subItems[0], "");
    w.Click("cmdMoveDown");
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"A", "(new)"}));
    EXPECT_EQ(Rows(w).Row(1).key, "new");
    w.Click("cmdMoveDown");
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"A", "(new)"}));
    w.Click("cmdCancel");
  });
}

TEST_F(dlgConnectTest, KeysOfTheListMoveReassignAndRemove) {
  WriteList({{"DSN=a", "A"}, {"DSN=b", "B"}});
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 2);
    Rows(w).SetFocus();
    w.PressKey(key::up, shiftState::ctrl);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "B", "A"}));
    Fill(w, "DSN=x", "X");
    w.PressKey(key::equals, shiftState::ctrl);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "X", "A"}));
    w.PressKey(key::del);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "A"}));
    w.Click("cmdCancel");
  });
}

TEST_F(dlgConnectTest, TheFirstSortIsConfirmedAndTheSavedOrderIsTheSortedOne) {
  WriteList({{"DSN=1", "b"}, {"DSN=0", "C"}, {"DSN=2", "a"}});
  desktop.ExpectMessage("Sort list by caption?", MessageResult::Cancel);
  desktop.ExpectMessage("Sort list by caption?", MessageResult::Ok, [](const Message& message) {
    EXPECT_EQ(message.icon, MessageIcon::Question);
  });
  Go([](Window& w) {
    w.ClickColumn("lsvConnections", 0);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "b", "C", "a"}));
    w.ClickColumn("lsvConnections", 0);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "a", "b", "C"}));
    w.ClickColumn("lsvConnections", 0);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"C", "b", "a", "(new)"}));
    w.ClickColumn("lsvConnections", 1);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "C", "b", "a"}));
    w.SelectRow("lsvConnections", 1);
    w.Click("cmdConnect");
  });
  EXPECT_EQ(Saved(),
            (std::vector<SavedConnection>{{"DSN=0", "C"}, {"DSN=1", "b"}, {"DSN=2", "a"}}));
}

TEST_F(dlgConnectTest, TheMenuOfTheListOffersWhatItsKeysDo) {
  WriteList({{"DSN=1", "b"}, {"DSN=0", "c"}});
  const auto choose = [this](Window& w, const char* entry) {
    desktop.ExpectPopup("menuConnections", entry);
    w.PressKey(key::contextMenu);
    return Captions(w);
  };
  desktop.ExpectMessage("Sort list by caption?", MessageResult::Ok);
  Go([&](Window& w) {
    w.Find<Control>("lsvConnections").SetFocus();
    choose(w, "");
    EXPECT_FALSE(w.Menu("mnuConRemove").Enabled()) << "the new one stays";
    w.SelectRow("lsvConnections", 1);
    EXPECT_EQ(choose(w, "mnuConDown"), (std::vector<std::string>{"(new)", "c", "b"}));
    EXPECT_EQ(choose(w, "mnuConUp"), (std::vector<std::string>{"(new)", "b", "c"}));
    choose(w, "mnuConSortCaption");
    EXPECT_EQ(choose(w, "mnuConSortCaption"), (std::vector<std::string>{"c", "b", "(new)"}));
    EXPECT_EQ(choose(w, "mnuConSortString"), (std::vector<std::string>{"(new)", "c", "b"}));
    EXPECT_EQ(choose(w, "mnuConRemove").size(), 2U);
    desktop.ExpectPopup("menuConnections", "mnuConConnect");
    w.MouseUp("lsvConnections", MouseButton::Right);
  });
  EXPECT_EQ(opener.opened.size(), 1U);
}

TEST_F(dlgConnectTest, TheListIsSortedByKeys) {
  WriteList({{"DSN=1", "b"}, {"DSN=0", "c"}});
  desktop.ExpectMessage("Sort list by connection string?", MessageResult::Ok);
  Go([](Window& w) {
    w.Find<Control>("lsvConnections").SetFocus();
    w.PressKey('2', shiftState::ctrl);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "c", "b"}));
    w.PressKey('1', shiftState::ctrl);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"(new)", "b", "c"}));
    w.PressKey('1', shiftState::ctrl);
    EXPECT_EQ(Captions(w), (std::vector<std::string>{"c", "b", "(new)"}));
    w.Click("cmdCancel");
  });
}

TEST_F(dlgConnectTest, DoubleClickingARowConnects) {
  WriteList({{"DSN=a", "A"}});
  Go([](Window& w) { w.DoubleClickRow("lsvConnections", 1); });
  ASSERT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(opener.opened[0].connection.connectionString, "DSN=a");
}

TEST_F(dlgConnectTest, ADoubleClickBesideTheRowsOrOfAnotherButtonDoesNotConnect) {
  WriteList({{"DSN=a", "A"}});
  desktop.ExpectPopup("menuConnections", "");
  Go([](Window& w) {
    w.SelectRow("lsvConnections", 1);
    w.DoubleClick("lsvConnections");
    w.DoubleClickRow("lsvConnections", 1, MouseButton::Right);
    w.DoubleClickRow("lsvConnections", 1, MouseButton::Middle);
    EXPECT_TRUE(w.Visible());
    w.Click("cmdCancel");
  });
  EXPECT_TRUE(opener.opened.empty());
}

TEST_F(dlgConnectTest, MouseAndKeysChooseTheColours) {
  Go([&](Window& w) {
    auto& sample = w.Find<Label>("labColor");
    desktop.AnswerColor(0x0000FF);
    w.MouseUp("labColor", MouseButton::Left);
    EXPECT_EQ(sample.BackColor(), 0x0000FFU);
    desktop.AnswerColor(0x00FF00);
    w.MouseUp("labColor", MouseButton::Right);
    EXPECT_EQ(sample.ForeColor(), 0x00FF00U);
    desktop.CancelColor();
    w.PressKey('B', shiftState::alt);
    EXPECT_EQ(sample.BackColor(), 0x0000FFU);
    desktop.AnswerColor(0x010203);
    w.PressKey('F', shiftState::alt);
    EXPECT_EQ(sample.ForeColor(), 0x010203U);
    w.MouseUp("labColor", MouseButton::Left, shiftState::ctrl);
    w.MouseUp("labColor", MouseButton::Right, shiftState::ctrl);
    EXPECT_EQ(sample.BackColor(), 0x80000005U);
    EXPECT_EQ(sample.ForeColor(), 0x80000008U);
    w.Click("cmdCancel");
  });
  EXPECT_EQ(desktop.ColorDialogs().size(), 4U);
}

TEST_F(dlgConnectTest, ASettingsFileWithoutConnectionsIsNeverWritten) {
  folder.Write("Tessel.ini.xml", "<Tessel><Other/></Tessel>");
  Go([](Window& w) {
    EXPECT_EQ(Rows(w).Count(), 1);
    Fill(w, "DSN=b", "B");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(Content("Tessel.ini.xml"), "<Tessel><Other/></Tessel>");
}

TEST_F(dlgConnectTest, ADamagedSettingsFileIsLeftAndConnectingWorks) {
  folder.Write("Tessel.ini.xml", "<Tessel><Connections><Conn");
  Go([](Window& w) {
    EXPECT_EQ(Rows(w).Count(), 1);
    Fill(w, "DSN=b", "B");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(Content("Tessel.ini.xml"), "<Tessel><Connections><Conn");
}

TEST_F(dlgConnectTest, ClosingTheDialogIsCancelling) {
  Go([](Window& w) { w.CloseByControlBox(); });
  EXPECT_TRUE(opener.opened.empty());
}

TEST_F(dlgConnectTest, AListThatCannotBeSavedIsToldOnceAndTheConnectionStands) {
  files.FailWrites();
  Go([](Window& w) {
    Fill(w, "Provider=X", "Mine");
    w.Click("cmdConnect");
  });
  EXPECT_EQ(opener.opened.size(), 1U);
  EXPECT_EQ(opener.notSaved, (std::vector<std::string>{folder.File("Tessel.ini.xml") +
                                                       ": No space left on device"}));
  EXPECT_TRUE(desktop.Messages().empty());
  EXPECT_EQ(opener.queryFocused, 1);
}

}  // namespace
}  // namespace tessel
