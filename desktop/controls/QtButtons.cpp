#include "desktop/controls/QtButtons.h"

#include <QSignalBlocker>

namespace tessel {

QtButton::QtButton(QAbstractButton& widget, const ControlSite& site) : ControlOf(widget, site) {
  QObject::connect(&widget, &QAbstractButton::clicked, &Face(), [this] { Raise(Click); });
}

QtCheckBox::QtCheckBox(QCheckBox& widget, const ControlSite& site) : ControlOf(widget, site) {
  QObject::connect(&widget, &QCheckBox::toggled, &Face(), [this] { Raise(Click); });
}

void QtCheckBox::WriteValue(bool checked) {
  const QSignalBlocker silence(TheWidget());
  TheWidget().setChecked(checked);
}

QtOptionButton::QtOptionButton(QRadioButton& widget, const ControlSite& site)
    : ControlOf(widget, site) {
  QObject::connect(&widget, &QRadioButton::toggled, &Face(), [this](bool chosen) {
    if (chosen) Raise(Click);
  });
}

/// The toolkit lets the chosen one of an exclusive group be cleared only while it is not exclusive.
void QtOptionButton::WriteValue(bool chosen) {
  const QSignalBlocker silence(TheWidget());
  TheWidget().setAutoExclusive(chosen);
  TheWidget().setChecked(chosen);
  TheWidget().setAutoExclusive(true);
}

}  // namespace tessel
