#include "logic/results/commands/KeyMenu.h"

#include "contract/base/Keys.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/MenuItem.h"

namespace tessel {

namespace {

using namespace shiftState;

struct Entry {
  const char* item;
  int keyCode;
  int shift;
  const char* control;  ///< Empty: it can always be used.
};

constexpr Entry arrangingEntries[] = {
    {"mnuRowsFind", 'F', ctrl, "DataGrid"},
    {"mnuRowsFilter", 'F', ctrl | shift, "DataGrid"},
    {"mnuRowsSort", 'S', ctrl | shift, "DataGrid"},
    {"mnuRowsSortFurther", 'A', ctrl | shift, "DataGrid"},
    {"mnuColumnWider", 'W', ctrl | shift, "DataGrid"},
    {"mnuColumnNarrower", 'N', ctrl | shift, "DataGrid"},
};

constexpr Entry otherEntries[] = {
    {"mnuRowsExport", 'E', ctrl | shift, "DataGrid"},
    {"mnuRowsAccept", 'S', ctrl, "cmdAccept"},
    {"mnuRowsReject", 'R', ctrl, "cmdReject"},
    {"mnuRowsNull", '0', ctrl, "DataGrid"},
    {"mnuRowsView", key::f3, none, "DataGrid"},
    {"mnuRowsEdit", key::f4, none, "DataGrid"},
    {"mnuRowsRecord", 'R', ctrl | shift, "DataGrid"},
    {"mnuRowsValue", 'V', ctrl | shift, "DataGrid"},
    {"mnuRowsWarning", 'W', ctrl | alt, "lblWarning"},
    {"mnuRowsChart", 'G', ctrl | shift, "DataGrid"},
    {"mnuQueryAgain", key::f5, none, "cmdRequery"},
    {"mnuQueryAgainTags", key::f5, ctrl, "cmdRequeryTags"},
    {"mnuQueryBack", key::left, alt, "cmdHistoryBack"},
    {"mnuQueryForward", key::right, alt, "cmdHistoryForward"},
    {"mnuQueryForwardTags", key::end, alt, "cmdHistoryForwardTags"},
    {"mnuQueryBehind", key::up, alt, "cmdHistoryBack"},
    {"mnuQueryAhead", key::down, alt, "cmdHistoryForward"},
    {"mnuResultNext", key::pageDown, ctrl, "cboResult"},
    {"mnuResultPrevious", key::pageUp, ctrl, "cboResult"},
    {"mnuQueryStatements", 'S', ctrl | alt, "cmdStatements"},
    {"mnuQueryProperties", 'Q', ctrl, "cmdProperties"},
    {"mnuCnLock", 'L', ctrl, "chkLock"},
    {"mnuCnTakesPart", 'T', ctrl | shift, "chkTakesPart"},
    {"mnuCnImport", 'I', ctrl | shift, ""},
    {"mnuCnDatabase", 'D', ctrl | alt, "cboCatalog"},
    {"mnuCnReconnect", 'C', ctrl | alt, ""},
    {"mnuCnErrors", 'E', ctrl | alt, "cmdCnErrors"},
    {"mnuCnProperties", 'P', ctrl | alt, ""},
};

constexpr const char* titles[] = {"menuRecords", "menuQuery", "menuConnection"};

void Wire(Window& window, const Entry& entry, const KeyPress& press) {
  window.Menu(entry.item).Click = [press, &entry] { press(entry.keyCode, entry.shift); };
}

void RefreshEntry(Window& window, const Entry& entry) {
  MenuItem& item = window.Menu(entry.item);
  const bool always = *entry.control == '\0';
  const Control* control = always ? nullptr : &window.Find<Control>(entry.control);
  item.SetEnabled(always || (control->Visible() && control->Enabled()));
  if (const auto* box = dynamic_cast<const CheckBox*>(control)) item.SetChecked(box->Value());
}

}  // namespace

void WireArrangingMenu(Window& window, const KeyPress& press) {
  for (const Entry& entry : arrangingEntries) Wire(window, entry, press);
}

KeyMenu::KeyMenu(Window& window, const KeyPress& press) : window_(window) {
  WireArrangingMenu(window, press);
  for (const Entry& entry : otherEntries) Wire(window, entry, press);
  for (const char* title : titles) window.Menu(title).Click = [this] { Refresh(); };
}

void KeyMenu::Refresh() {
  for (const Entry& entry : arrangingEntries) RefreshEntry(window_, entry);
  for (const Entry& entry : otherEntries) RefreshEntry(window_, entry);
}

}  // namespace tessel
