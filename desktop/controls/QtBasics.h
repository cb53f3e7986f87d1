#pragma once

#include <QFrame>
#include <QLabel>
#include <QProgressBar>
#include <QTimer>

#include "contract/desktop/Progress.h"
#include "contract/desktop/controls/Label.h"
#include "desktop/controls/ControlOf.h"

namespace tessel {

class QtLabel final : public ControlOf<Label, QLabel> {
 public:
  QtLabel(QLabel& widget, const ControlSite& site);
  [[nodiscard]] std::string Caption() const override { return caption_; }
  void SetCaption(std::string_view caption) override;

 private:
  std::string caption_;
  QString name_;  ///< As the form has it; a screen reader is told the caption with it.
};

class QtPictureBox final : public ControlOf<PictureBox, QWidget> {
 public:
  QtPictureBox(QWidget& widget, const ControlSite& site);
};

class QtProgressBar final : public ControlOf<ProgressBar, QProgressBar> {
 public:
  QtProgressBar(QProgressBar& widget, const ControlSite& site);
  [[nodiscard]] double Max() const override { return max_; }
  void SetMax(double max) override;
  [[nodiscard]] double Value() const override { return value_; }
  void SetValue(double value) override;

 private:
  void Show();

  double max_;
  double value_;
  int step_ = -1;  ///< Of the bar as shown; -1: not shown yet.
};

class QtTimer final : public Timer {
 public:
  explicit QtTimer(FailureSink& failures);
  [[nodiscard]] bool Enabled() const override { return timer_.isActive(); }
  void SetEnabled(bool enabled) override;
  void SetInterval(int milliseconds) override { timer_.setInterval(milliseconds); }

 private:
  QTimer timer_;
};

}  // namespace tessel
