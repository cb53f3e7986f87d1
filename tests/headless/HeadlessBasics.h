#pragma once

#include <string>
#include <vector>

#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "tests/headless/HeadlessControl.h"

namespace tessel::test {

class HeadlessLabel final : public Headless<Label> {
 public:
  HeadlessLabel(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                HeadlessControl* container)
      : Headless(widget, failures, keeper, container), caption_(widget.properties.Text("text")) {}
  [[nodiscard]] std::string Caption() const override { return caption_; }
  [[nodiscard]] std::string MarkedText() const override { return caption_; }
  void SetCaption(std::string_view caption) override { caption_ = caption; }

 private:
  std::string caption_;
};

class HeadlessPictureBox final : public Headless<PictureBox> {
 public:
  using Headless::Headless;
  void SetBounds(const Rect& bounds) override;
  /// What the first showing of the window does.
  void RaiseResize() { Raise(Resize); }
};

class HeadlessButton final : public Headless<Button> {
 public:
  HeadlessButton(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                 HeadlessControl* container)
      : Headless(widget, failures, keeper, container), caption_(widget.properties.Text("text")) {}
  [[nodiscard]] std::string Caption() const override { return caption_; }
  [[nodiscard]] std::string MarkedText() const override { return caption_; }
  void SetCaption(std::string_view caption) override { caption_ = caption; }

  void Press() override { Button::Press(); }
  bool TakeKey(int keyCode, int shift) override;

 private:
  std::string caption_;
};

class HeadlessCheckBox final : public Headless<CheckBox> {
 public:
  HeadlessCheckBox(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                   HeadlessControl* container)
      : Headless(widget, failures, keeper, container),
        caption_(widget.properties.Text("text")),
        checked_(widget.properties.Flag("checked", false)) {}
  [[nodiscard]] std::string Caption() const override { return caption_; }
  [[nodiscard]] std::string MarkedText() const override { return caption_; }

  void Press() override { SetValue(!Value()); }
  bool TakeKey(int keyCode, int shift) override;

 protected:
  [[nodiscard]] bool ReadValue() const override { return checked_; }
  void WriteValue(bool checked) override { checked_ = checked; }

 private:
  std::string caption_;
  bool checked_;
};

class HeadlessOptionButton;
/// The option buttons of one container.
using OptionGroup = std::vector<HeadlessOptionButton*>;

class HeadlessOptionButton final : public Headless<OptionButton> {
 public:
  /// Joins `group`, which outlives it.
  HeadlessOptionButton(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                       HeadlessControl* container, OptionGroup& group);
  [[nodiscard]] std::string MarkedText() const override { return caption_; }

  void Press() override { SetValue(true); }
  bool TakeKey(int keyCode, int shift) override;

 protected:
  [[nodiscard]] bool ReadValue() const override { return chosen_; }
  void WriteValue(bool chosen) override;

 private:
  std::string caption_;
  bool chosen_;
  OptionGroup* group_;
};

class HeadlessProgressBar final : public Headless<ProgressBar> {
 public:
  HeadlessProgressBar(const FormWidget& widget, FailureSink& failures, FocusKeeper& keeper,
                      HeadlessControl* container)
      : Headless(widget, failures, keeper, container),
        max_(widget.properties.Number("maximum", 100)),
        value_(widget.properties.Number("value", 0)) {}
  [[nodiscard]] double Max() const override { return max_; }
  void SetMax(double max) override;
  [[nodiscard]] double Value() const override { return value_; }
  void SetValue(double value) override;

 private:
  double max_;
  double value_;
};

}  // namespace tessel::test
