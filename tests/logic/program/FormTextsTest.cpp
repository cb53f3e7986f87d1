// Captions, tool tips and menus as the forms have them, character for character.

#include <algorithm>
#include <map>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "contract/text/Ascii.h"
#include "tests/headless/FormFile.h"

namespace tessel::test {
namespace {

using Names = std::vector<std::string>;
using Texts = std::map<std::string, std::string>;

struct FormTexts {
  std::string form;
  Texts captions;  ///< Of controls and menus, by name.
  Texts toolTips;
};

void PrintTo(const FormTexts& texts, std::ostream* stream) { *stream << texts.form; }

const Texts forwardedMenus{{"menuWindow", "&Window"},
                           {"menuHelp", "&Help"},
                           {"mnuNewInstance", "&New Instance"},
                           {"mnuWindowSidebar", "&Sidebar"},
                           {"mnuWindowTileHoriz", "Tile &Horizontally"},
                           {"mnuWindowTileVert", "Tile &Vertically"},
                           {"mnuHelpContents", "&Contents"},
                           {"mnuHelpIndex", "&Index"},
                           {"mnuHelpShortcuts", "&Keyboard Shortcuts"},
                           {"mnuHelpAbout", "&About Tessel"}};

const FormTexts frame{"frmMDI",
                      {{"menuFile", "&File"},
                       {"mnuFileNew", "&New"},
                       {"mnuFileOpen", "&Open..."},
                       {"mnuFileSave", "&Save"},
                       {"mnuFileSaveAs", "Save &As..."},
                       {"mnuFileExit", "E&xit"},
                       {"menuGlobalDB", "&Database"},
                       {"mnuDBExecute", "&Execute SQL"},
                       {"mnuDBPreview", "&Preview SQL"},
                       {"mnuDBConnect", "&Connect..."},
                       {"menuEdit", "&Edit"},
                       {"mnuEditWordWrap", "&Word Wrap"},
                       {"mnuEditVocab", "&Vocabulary..."},
                       {"menuDB", "Database"},
                       {"mnuDBLoadSchemaFromDB", "Load Schema from &Database"},
                       {"mnuDBLoadSchemaFromXML", "&Load Schema from XML..."},
                       {"mnuDBSaveSchemaToXML", "&Save Schema to XML..."},
                       {"mnuDBImport", "&Import Records..."},
                       {"menuTable", "Table"},
                       {"mnuTableName", "&Table Name"},
                       {"mnuTableFieldNames", "&Field Names"},
                       {"mnuTableSelect", "&SELECT"},
                       {"mnuTableCount", "&COUNT / GROUP"},
                       {"mnuTableInsert", "&INSERT"},
                       {"mnuTableUpdate", "&UPDATE"},
                       {"mnuTableDelete", "&DELETE"},
                       {"mnuTableWhere", "&WHERE"},
                       {"mnuTableImport", "Im&port Records..."},
                       {"menuTableJoin", "&JOIN along Foreign Keys"},
                       {"mnuTableDefinition", "Show Definiti&on..."},
                       {"mnuShowTypes", "Show T&ypes"},
                       {"mnuObjectName", "&Name"},
                       {"mnuObjectSelect", "&SELECT"},
                       {"mnuObjectDefinition", "Show &Definition..."},
                       {"mnuDBExplain", "E&xplain..."},
                       {"mnuDBDiagram", "Dia&gram..."},
                       {"menuField", "Field"},
                       {"mnuFieldName", "&Name"},
                       {"menuFieldTag", "&Tag"},
                       {"mnuFieldTag_0", "<%=Value%>"},
                       {"mnuFieldTag_1", "<*=String*>"},
                       {"mnuFieldTag_2", "{%=ValueSet%}"},
                       {"mnuFieldTag_3", "{*=StringSet*}"},
                       {"mnuFieldMinMax", "&MIN, MAX"},
                       {"mnuFieldBuildVocab", "Build &Vocabulary..."},
                       {"menuTags", "Tags"},
                       {"mnuTag_0", "<%?Value%>"},
                       {"mnuTag_1", "<*?String*>"}},
                      {{"cmdAddTag", "Add tag (Ins)"},
                       {"cmdRemoveTag", "Remove tag (Del)"},
                       {"cboTagValue", "Selected tag value"}}};

const FormTexts query{"frmMain",
                      {},
                      {{"cmdNew", "New (Ctrl+N)"},
                       {"cmdOpen", "Open... (Ctrl+O)"},
                       {"cmdSave", "Save (Ctrl+S)"},
                       {"cmdExecute", "Execute SQL (F5)"},
                       {"chkWordWrap", "Word Wrap (Ctrl+W)"}}};

const FormTexts records{
    "frmRecords",
    {{"menuRecords", "&Records"},
     {"mnuCvtCSV", "--> &CSV"},
     {"mnuCvtQuotedCSV", "--> &Quoted CSV"},
     {"mnuCvtTabDelimited", "--> &Tab Delimited"},
     {"mnuCvtInsertSQL", "--> &Insert (SQL)"},
     {"mnuCvtSetSQL", "--> &Set (SQL)"},
     {"mnuCvtHTMLTable", "--> &HTML <table>"},
     {"mnuCvtArrayC", "--> &Array (C)"},
     {"mnuRowsExport", "E&xport to File...\tCtrl+Shift+E"},
     {"menuBLOB", "BLOB"},
     {"mnuBLOBSave", "&Save to file..."},
     {"mnuBLOBLoad", "&Load from file..."},
     {"mnuBLOBNull", "&NULL"},
     {"mnuRowsRecord", "&Record as Form\tCtrl+Shift+R"},
     {"mnuRowsValue", "&Look into Value\tCtrl+Shift+V"}},
    {{"chkLock", "Click to make records editable on subsequent queries (Ctrl+L)"}}};

const FormTexts text{"frmText",
                     {{"cmdOpen", "Open..."},
                      {"cmdSave", "Save..."},
                      {"cmdCopy", "Copy"},
                      {"chkWordWrap", "Word Wrap"},
                      {"chkIndented", "&Indented"}},
                     {}};

const FormTexts connect{
    "dlgConnect",
    {{"lblCaption", "Captio&n"},
     {"lblCnStr", "&Connection String"},
     {"lblUsername", "&Username"},
     {"lblPassword", "&Password"},
     {"chkLoadSchemaFromDB", "Load &Schema from Database"},
     {"labColor", "Colors"},
     {"cmdOLEDB", "O&LE DB..."},
     {"cmdODBC", "&ODBC..."},
     {"cmdDBAccess", "&Access..."},
     {"cmdDBSQLServer", "SQL Se&rver..."},
     {"cmdDBGeneric", "Ot&her..."},
     {"cmdConnect", "Connec&t"},
     {"cmdCancel", "Cancel"}},
    {{"txtCaption", "Friendly name for the database"},
     {"chkLoadSchemaFromDB", "Read all table and field names, to assist in forming queries"},
     {"labColor",
      "Left/Right-click to set background/foreground color (Alt+B/F); Hold Ctrl to reset"},
     {"cmdMoveUp", "Move Up (Ctrl+Up)"},
     {"cmdMoveDown", "Move Down (Ctrl+Down)"},
     {"cmdReassign", "Re-assign (update entry) (Ctrl+=)"},
     {"cmdRemove", "Remove (Del)"}}};

const FormTexts builders[]{
    {"dlgCnODBC",
     {{"optDSN", "DS&N"},
      {"optDSNLess", "DSN-&less connection:-"},
      {"cmdOK", "OK"},
      {"cmdCancel", "&Cancel"}},
     {}},
    {"dlgCnSQLSrv",
     {{"chkTrusted", "&Trusted Connection (Integrated Windows authentication)"},
      {"lblNetLib", "&Network Library"},
      {"cmdOK", "OK"},
      {"cmdCancel", "&Cancel"}},
     {}},
    {"dlgCnAccess", {{"lblFile", "&File"}, {"cmdOK", "OK"}, {"cmdCancel", "&Cancel"}}, {}},
    {"dlgCnGeneric",
     {{"lblProvider", "Provide&r"},
      {"lblDataSource", "&Data Source"},
      {"lblCatalog", "&Initial Catalog"},
      {"lblUsername", "&User ID"},
      {"lblPassword", "&Password"},
      {"cmdOK", "OK"},
      {"cmdCancel", "&Cancel"}},
     {}}};

const FormTexts progress{
    "dlgAsync", {{"lblTimer", "    :    :    "}, {"cmdCancel", "&Cancel"}}, {}};

std::vector<FormTexts> AllTexts() {
  std::vector<FormTexts> all{frame,
                             query,
                             records,
                             text,
                             connect,
                             progress,
                             {"frmMDI", forwardedMenus, {}},
                             {"frmRecords", forwardedMenus, {}}};
  all.insert(all.end(), std::begin(builders), std::end(builders));
  return all;
}

FormFile Read(const std::string& form) { return FormFile::Read(TESSEL_FORMS_DIR, form); }

/// Captions and tool tips that a form has, by name.
FormTexts TextsIn(const FormFile& form) {
  FormTexts found{form.name, {}, {}};
  for (const FormWidget& widget : form.widgets) {
    found.captions[widget.name] = widget.properties.Text("text");
    found.toolTips[widget.name] = widget.properties.Text("toolTip");
  }
  for (const FormMenuItem& item : form.menus) found.captions[item.name] = item.caption;
  return found;
}

class FormTextsTest : public testing::TestWithParam<FormTexts> {};

TEST_P(FormTextsTest, AreThoseThatUsersAndManualsKnow) {
  const FormTexts found = TextsIn(Read(GetParam().form));
  for (const auto& [name, caption] : GetParam().captions)
    EXPECT_EQ(found.captions.at(name), caption) << name;
  for (const auto& [name, toolTip] : GetParam().toolTips)
    EXPECT_EQ(found.toolTips.at(name), toolTip) << name;
}

INSTANTIATE_TEST_SUITE_P(Forms, FormTextsTest, testing::ValuesIn(AllTexts()));

TEST(FormTitlesTest, DialogsHaveTheirTitles) {
  const Texts titles{{"dlgConnect", "Connect to Database"},
                     {"dlgCnODBC", "Connect to ODBC Data Source"},
                     {"dlgCnSQLSrv", "Connect to SQL Server Database"},
                     {"dlgCnAccess", "Connect to Access Database"},
                     {"dlgCnGeneric", "Connect to Data Source"}};
  for (const auto& [form, title] : titles)
    EXPECT_EQ(Read(form).properties.Text("windowTitle"), title) << form;
}

/// The first commands of a menu and the lines between them, in their order.
Names CommandsOf(const FormFile& form, const std::string& menu, std::size_t count) {
  const auto title = std::ranges::find(form.menus, menu, &FormMenuItem::name);
  Names commands = title == form.menus.end() ? Names() : title->entries;
  commands.resize(std::min(commands.size(), count));
  return commands;
}

/// Other entries stand behind these.
TEST(FormMenusTest, CommandsStandInTheirMenusInOrder) {
  const FormFile form = Read("frmMDI");
  const std::map<std::string, Names> menus{
      {"menuFile",
       {"mnuFileNew", "mnuFileOpen", "mnuFileSave", "mnuFileSaveAs", "mnuFile_1", "mnuFileExit"}},
      {"menuGlobalDB", {"mnuDBExecute", "mnuDBPreview", "mnuDB_1", "mnuDBConnect"}},
      {"menuEdit", {"mnuEditWordWrap", "mnuEdit_1", "mnuEditVocab"}},
      {"menuWindow",
       {"mnuNewInstance", "mnuWindow_1", "mnuWindowSidebar", "mnuWindowTileHoriz",
        "mnuWindowTileVert"}},
      {"menuHelp",
       {"mnuHelpContents", "mnuHelpIndex", "mnuHelp_1", "mnuHelpShortcuts", "mnuHelp_2",
        "mnuHelpAbout"}},
      {"menuTable",
       {"mnuTableName", "mnuTableFieldNames", "mnuTableSelect", "mnuTableCount", "mnuTableInsert",
        "mnuTableUpdate", "mnuTableDelete", "mnuTableWhere"}},
      {"menuField", {"mnuFieldName", "menuFieldTag", "mnuFieldMinMax", "mnuFieldBuildVocab"}},
      {"menuFieldTag", {"mnuFieldTag_0", "mnuFieldTag_1", "mnuFieldTag_2", "mnuFieldTag_3"}},
      {"menuTags", {"mnuTag_0", "mnuTag_1"}}};
  for (const auto& [menu, commands] : menus)
    EXPECT_EQ(CommandsOf(form, menu, commands.size()), commands) << menu;
}

/// The letter marked with "&", in capitals; empty when there is none.
std::string MnemonicIn(std::string_view caption) {
  const std::size_t mark = caption.find('&');
  return mark < caption.size() ? AsciiUpper(caption.substr(mark + 1, 1)) : std::string();
}

/// The commands of a menu that share a mnemonic with one above them.
Names SharedMnemonics(const FormMenuItem& menu, Texts captions) {
  Texts taken;
  Names shared;
  for (const std::string& command : menu.entries) {
    const std::string letter = MnemonicIn(captions[command]);
    if (!letter.empty() && !taken.emplace(letter, command).second)
      shared.push_back(command + " with " + taken.at(letter));
  }
  return shared;
}

TEST(FormMenusTest, CommandsOfAMenuHaveMnemonicsOfTheirOwn) {
  for (const std::string& name : FormFile::NamesIn(TESSEL_FORMS_DIR)) {
    const FormFile form = Read(name);
    for (const FormMenuItem& menu : form.menus)
      EXPECT_EQ(SharedMnemonics(menu, TextsIn(form).captions), Names()) << menu.name;
  }
}

TEST(FormMenusTest, ListsHaveTheirColumns) {
  const FormFile form = Read("dlgConnect");
  const auto list = std::ranges::find(form.widgets, "lsvConnections", &FormWidget::name);
  ASSERT_NE(list, form.widgets.end());
  EXPECT_EQ(list->columns, (Names{"Caption", "Connection String"}));
}

}  // namespace
}  // namespace tessel::test
