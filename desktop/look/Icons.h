#pragma once

#include <QIcon>
#include <QLabel>
#include <QString>

namespace tessel {

/// Makes the program's own set, desktop/icons, the only one: forms that ask for an icon by its name
/// get it from there on every desktop.
void UseOwnIconSet();

/// The program's own icon of that name. It is drawn anew at every size and for the ground in use,
/// so it follows light and dark; what is disabled is pale.
[[nodiscard]] QIcon NamedIcon(const QString& name);

/// Gives the tool buttons and menu entries of a form, and its window, the icons as NamedIcon draws
/// them. A button with words has none.
void DrawIconsOf(QWidget& form);

/// A label that shows an icon of this side, in pixels, and draws it anew when the colours change.
class IconLabel final : public QLabel {
  Q_OBJECT

 public:
  IconLabel(QIcon icon, int side, QWidget* parent = nullptr);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Show();

  QIcon icon_;
  int side_;
};

}  // namespace tessel
