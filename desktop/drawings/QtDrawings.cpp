#include "desktop/drawings/QtDrawings.h"

#include <QClipboard>
#include <QGuiApplication>

#include "contract/base/Error.h"

namespace tessel {

namespace {

std::string Content(const QByteArray& bytes) {
  if (bytes.isEmpty())
    throw Error(errorNumber::application, "Tessel", "There is no drawing, or it is too large.");
  return bytes.toStdString();
}

}  // namespace

QtChartBox::QtChartBox(ChartWidget& widget, const ControlSite& site) : ControlOf(widget, site) {
  QObject::connect(&widget, &ChartWidget::viewWanted, &Face(),
                   [this](double lower, double upper) { Raise(ViewChanged, lower, upper); });
}

std::string QtChartBox::FileContent(DrawingFormat format) const {
  return Content(TheWidget().HasPicture() ? TheWidget().FileContent(format) : QByteArray());
}

void QtChartBox::CopyPicture() const {
  QGuiApplication::clipboard()->setImage(TheWidget().Picture());
}

QtDiagramBox::QtDiagramBox(DiagramWidget& widget, const ControlSite& site)
    : ControlOf(widget, site) {
  QObject::connect(&widget, &DiagramWidget::zoomed, &Face(), [this] { Raise(Zoomed); });
}

bool QtDiagramBox::SetSvg(std::string_view svg) {
  return TheWidget().SetSvg(QByteArray(svg.data(), static_cast<qsizetype>(svg.size())));
}

std::string QtDiagramBox::FileContent(DrawingFormat format) const {
  return Content(TheWidget().FileContent(format));
}

void QtDiagramBox::CopyPicture() const {
  QGuiApplication::clipboard()->setImage(TheWidget().Picture());
}

}  // namespace tessel
