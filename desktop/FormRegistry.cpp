#include "desktop/FormRegistry.h"

#include <QDialog>
#include <QMainWindow>

#include "desktop/look/Icons.h"
#include "ui_dlgAbout.h"
#include "ui_dlgAsync.h"
#include "ui_dlgChart.h"
#include "ui_dlgCnAccess.h"
#include "ui_dlgCnGeneric.h"
#include "ui_dlgCnODBC.h"
#include "ui_dlgCnSQLSrv.h"
#include "ui_dlgCompare.h"
#include "ui_dlgConnect.h"
#include "ui_dlgDataLink.h"
#include "ui_dlgDiagram.h"
#include "ui_dlgExport.h"
#include "ui_dlgImport.h"
#include "ui_dlgPassword.h"
#include "ui_dlgPlan.h"
#include "ui_dlgRunAll.h"
#include "ui_dlgText.h"
#include "ui_dlgWindows.h"
#include "ui_frmMDI.h"
#include "ui_frmMain.h"
#include "ui_frmRecords.h"
#include "ui_frmRows.h"
#include "ui_frmText.h"
#include "ui_frmValue.h"

namespace tessel {

namespace {

template <class Root, class Form>
std::unique_ptr<QWidget> Make() {
  auto root = std::make_unique<Root>();
  Form().setupUi(root.get());
  DrawIconsOf(*root);
  return root;
}

struct Entry {
  std::string_view name;
  std::unique_ptr<QWidget> (*make)();
};

constexpr Entry forms[] = {
    {"frmMDI", &Make<QMainWindow, Ui::frmMDI>},
    {"frmMain", &Make<QWidget, Ui::frmMain>},
    {"frmRecords", &Make<QWidget, Ui::frmRecords>},
    {"frmRows", &Make<QWidget, Ui::frmRows>},
    {"frmText", &Make<QDialog, Ui::frmText>},
    {"frmValue", &Make<QDialog, Ui::frmValue>},
    {"dlgAbout", &Make<QDialog, Ui::dlgAbout>},
    {"dlgAsync", &Make<QDialog, Ui::dlgAsync>},
    {"dlgChart", &Make<QDialog, Ui::dlgChart>},
    {"dlgCnAccess", &Make<QDialog, Ui::dlgCnAccess>},
    {"dlgCnGeneric", &Make<QDialog, Ui::dlgCnGeneric>},
    {"dlgCnODBC", &Make<QDialog, Ui::dlgCnODBC>},
    {"dlgCnSQLSrv", &Make<QDialog, Ui::dlgCnSQLSrv>},
    {"dlgCompare", &Make<QDialog, Ui::dlgCompare>},
    {"dlgConnect", &Make<QDialog, Ui::dlgConnect>},
    {"dlgDataLink", &Make<QDialog, Ui::dlgDataLink>},
    {"dlgDiagram", &Make<QDialog, Ui::dlgDiagram>},
    {"dlgExport", &Make<QDialog, Ui::dlgExport>},
    {"dlgImport", &Make<QDialog, Ui::dlgImport>},
    {"dlgPlan", &Make<QDialog, Ui::dlgPlan>},
    {"dlgPassword", &Make<QDialog, Ui::dlgPassword>},
    {"dlgRunAll", &Make<QDialog, Ui::dlgRunAll>},
    {"dlgText", &Make<QDialog, Ui::dlgText>},
    {"dlgWindows", &Make<QDialog, Ui::dlgWindows>},
};

}  // namespace

std::unique_ptr<QWidget> MakeForm(std::string_view name) {
  for (const Entry& form : forms)
    if (form.name == name) return form.make();
  return nullptr;
}

}  // namespace tessel
