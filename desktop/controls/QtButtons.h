#pragma once

#include <QAbstractButton>
#include <QCheckBox>
#include <QRadioButton>

#include "contract/desktop/controls/Button.h"
#include "desktop/controls/ControlOf.h"

namespace tessel {

class QtButton final : public ControlOf<Button, QAbstractButton> {
 public:
  QtButton(QAbstractButton& widget, const ControlSite& site);
  [[nodiscard]] std::string Caption() const override { return FromQt(TheWidget().text()); }
  void SetCaption(std::string_view caption) override { TheWidget().setText(ToQt(caption)); }
};

class QtCheckBox final : public ControlOf<CheckBox, QCheckBox> {
 public:
  QtCheckBox(QCheckBox& widget, const ControlSite& site);
  [[nodiscard]] std::string Caption() const override { return FromQt(TheWidget().text()); }

 protected:
  [[nodiscard]] bool ReadValue() const override { return TheWidget().isChecked(); }
  void WriteValue(bool checked) override;
};

class QtOptionButton final : public ControlOf<OptionButton, QRadioButton> {
 public:
  QtOptionButton(QRadioButton& widget, const ControlSite& site);

 protected:
  [[nodiscard]] bool ReadValue() const override { return TheWidget().isChecked(); }
  void WriteValue(bool chosen) override;
};

}  // namespace tessel
