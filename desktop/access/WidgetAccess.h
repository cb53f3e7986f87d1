#pragma once

#include <QAccessible>
#include <QPointer>
#include <QWidget>

namespace tessel {

/// What assistive tools are told of a widget: what the toolkit says, and what it leaves out or gets
/// wrong put right.
///
/// A label is told with its text, not with its name alone; the inner edit and list of a box bear
/// the box's name; the line of a grid in which a cell is edited bears that of the cell; places are
/// in native pixels.
class WidgetAccess final : public QAccessibleInterface {
 public:
  /// `plain` is the toolkit's object for the widget; it belongs to the toolkit until this one goes.
  WidgetAccess(QWidget& widget, QAccessibleInterface& plain);
  ~WidgetAccess() override;

  [[nodiscard]] bool isValid() const override { return widget_ != nullptr; }
  [[nodiscard]] QObject* object() const override { return widget_; }
  [[nodiscard]] QWindow* window() const override { return plain_.window(); }
  [[nodiscard]] QList<QPair<QAccessibleInterface*, QAccessible::Relation>>
  relations(QAccessible::Relation match) const override {
    return plain_.relations(match);
  }
  [[nodiscard]] QAccessibleInterface* focusChild() const override { return plain_.focusChild(); }
  [[nodiscard]] QAccessibleInterface* childAt(int x, int y) const override;
  [[nodiscard]] QAccessibleInterface* parent() const override { return plain_.parent(); }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    return plain_.child(index);
  }
  [[nodiscard]] int childCount() const override { return plain_.childCount(); }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* child) const override {
    return plain_.indexOfChild(child);
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text kind, const QString& text) override { plain_.setText(kind, text); }
  [[nodiscard]] QRect rect() const override;
  [[nodiscard]] QAccessible::Role role() const override;
  [[nodiscard]] QAccessible::State state() const override;
  [[nodiscard]] QColor foregroundColor() const override { return plain_.foregroundColor(); }
  [[nodiscard]] QColor backgroundColor() const override { return plain_.backgroundColor(); }
  void virtual_hook(int id, void* data) override { plain_.virtual_hook(id, data); }
  void* interface_cast(QAccessible::InterfaceType type) override {
    return plain_.interface_cast(type);
  }

 private:
  QPointer<QWidget> widget_;
  QAccessibleInterface& plain_;
  QAccessible::Id plainId_;
};

}  // namespace tessel
