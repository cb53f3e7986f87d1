#include "logic/results/commands/KeyMenu.h"

#include <iterator>

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

constexpr Entry entries[] = {
    {"mnuRowsExport", 'E', ctrl | shift, "DataGrid"},
    {"mnuRowsAccept", 'S', ctrl, "cmdAccept"},
    {"mnuRowsReject", 'R', ctrl, "cmdReject"},
    {"mnuRowsNull", '0', ctrl, "DataGrid"},
    {"mnuRowsView", key::f3, none, "DataGrid"},
    {"mnuRowsEdit", key::f4, none, "DataGrid"},
    {"mnuRowsRecord", 'R', ctrl | shift, "DataGrid"},
    {"mnuRowsValue", 'V', ctrl | shift, "DataGrid"},
    {"mnuRowsFind", 'F', ctrl, "DataGrid"},
    {"mnuRowsFilter", 'F', ctrl | shift, "DataGrid"},
    {"mnuRowsSort", 'S', ctrl | shift, "DataGrid"},
    {"mnuRowsSortFurther", 'A', ctrl | shift, "DataGrid"},
    {"mnuColumnWider", 'W', ctrl | shift, "DataGrid"},
    {"mnuColumnNarrower", 'N', ctrl | shift, "DataGrid"},
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

}  // namespace

KeyMenu::KeyMenu(Window& window, Press press) : window_(window) {
  for (const Entry& entry : entries) {
    window.Menu(entry.item).Click = [press, &entry] { press(entry.keyCode, entry.shift); };
    const bool always = *entry.control == '\0';
    controls_.push_back(always ? nullptr : &window.Find<Control>(entry.control));
  }
  for (const char* title : titles) window.Menu(title).Click = [this] { Refresh(); };
}

void KeyMenu::Refresh() {
  for (std::size_t i = 0; i < std::size(entries); ++i) {
    const Control* control = controls_[i];
    MenuItem& item = window_.Menu(entries[i].item);
    item.SetEnabled(control == nullptr || (control->Visible() && control->Enabled()));
    if (const auto* box = dynamic_cast<const CheckBox*>(control)) item.SetChecked(box->Value());
  }
}

}  // namespace tessel
