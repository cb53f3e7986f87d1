#include "desktop/window/ControlMaker.h"

#include <QGroupBox>

#include "desktop/controls/QtBasics.h"
#include "desktop/controls/QtButtons.h"
#include "desktop/controls/QtTextBoxes.h"
#include "desktop/controls/lists/QtListView.h"
#include "desktop/controls/lists/QtLists.h"
#include "desktop/controls/values/QtHexBox.h"
#include "desktop/controls/values/QtImageBox.h"
#include "desktop/drawings/QtDrawings.h"
#include "desktop/editor/QtRichTextBox.h"
#include "desktop/grid/QtDataGrid.h"
#include "desktop/tree/QtTreeView.h"

namespace tessel {

namespace {

/// Makes the adapter when the widget is of its class.
template <class Adapter, class Widget>
std::unique_ptr<Control> As(const ControlSite& site) {
  auto* widget = qobject_cast<Widget*>(&site.widget);
  return widget == nullptr ? nullptr : std::make_unique<Adapter>(*widget, site);
}

/// Many widgets are frames underneath; only a plain one is a container of its own.
std::unique_ptr<Control> AsPictureBox(const ControlSite& site) {
  const QMetaObject* kind = site.widget.metaObject();
  if (kind != &QFrame::staticMetaObject && kind != &QGroupBox::staticMetaObject) return nullptr;
  return std::make_unique<QtPictureBox>(site.widget, site);
}

using Maker = std::unique_ptr<Control> (*)(const ControlSite&);

/// A class stands before those it derives from.
constexpr Maker makers[] = {
    &As<QtChartBox, ChartWidget>,     &As<QtDiagramBox, DiagramWidget>,
    &As<QtRichTextBox, SqlEditor>,    &As<QtDataGrid, RecordGrid>,
    &As<QtHexBox, HexView>,           &As<QtImageBox, PictureView>,
    &As<QtListView, QTreeWidget>,     &As<QtTreeView, QTreeView>,
    &As<QtListBox, QListView>,        &As<QtLinesBox, QPlainTextEdit>,
    &As<QtLineBox, QLineEdit>,        &As<QtComboBox, QComboBox>,
    &As<QtCheckBox, QCheckBox>,       &As<QtOptionButton, QRadioButton>,
    &As<QtButton, QAbstractButton>,   &As<QtLabel, QLabel>,
    &As<QtProgressBar, QProgressBar>, &AsPictureBox,
};

}  // namespace

std::unique_ptr<Control> MakeControl(const ControlSite& site) {
  for (const Maker make : makers)
    if (auto control = make(site)) return control;
  return nullptr;
}

}  // namespace tessel
