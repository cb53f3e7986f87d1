#pragma once

#include <QAbstractScrollArea>
#include <QObject>
#include <QPointer>
#include <functional>
#include <string>
#include <vector>

class QDropEvent;

namespace tessel {

/// Takes the files that are dropped on a widget, or elsewhere on its top-level window where no
/// other widget takes them. What is dropped beside files of this machine is left alone, and nothing
/// is taken while another window is modal.
class FileDrops final : public QObject {
 public:
  /// `area` takes drops already, and outlives `owner`. `wanted` tells whether they are wanted now;
  /// `dropped` gets the full paths.
  FileDrops(QObject& owner, QAbstractScrollArea& area, std::function<bool()> wanted,
            std::function<void(const std::vector<std::string>&)> dropped);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void WatchWindow();
  [[nodiscard]] bool Takes(const QDropEvent& event) const;

  QAbstractScrollArea& area_;
  QPointer<QWidget> window_;
  std::function<bool()> wanted_;
  std::function<void(const std::vector<std::string>&)> dropped_;
};

}  // namespace tessel
