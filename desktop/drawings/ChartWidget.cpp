// A chart on the screen and in files. The library draws it; this file gives it the program's
// colours, the axes as they are meant, and tells which part of the x axis the user wants to see.

#include "desktop/drawings/ChartWidget.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>

#include "desktop/base/Text.h"
#include "desktop/drawings/DrawingFiles.h"
#include "desktop/drawings/PointCloud.h"
#include "desktop/look/Tokens.h"

namespace tessel {

namespace {

constexpr int mostNames = 24;           ///< Names of bars that can be read side by side.
constexpr std::size_t fineLine = 3000;  ///< Points from which a line is drawn thin.
constexpr double step = 0.1;            ///< Part of the axis that a key moves it by.
constexpr double closer = 0.8;          ///< Part of the axis that is left by one step closer.
constexpr int fileScale = 2;

QVector<double> ToQVector(const std::vector<double>& values) {
  return {values.begin(), values.end()};
}

QSharedPointer<QCPGraphDataContainer> DataOf(const ChartPicture& picture) {
  QVector<QCPGraphData> points;
  points.reserve(static_cast<qsizetype>(picture.x.size()));
  for (std::size_t i = 0; i < picture.x.size(); ++i) points.append({picture.x[i], picture.y[i]});
  QSharedPointer<QCPGraphDataContainer> data(new QCPGraphDataContainer);
  data->set(points, std::ranges::is_sorted(picture.x));
  return data;
}

/// Of many names only some are written.
QSharedPointer<QCPAxisTicker> NameTicker(const std::vector<std::string>& names) {
  QSharedPointer<QCPAxisTickerText> ticker(new QCPAxisTickerText);
  const std::size_t every = names.size() / mostNames + 1;
  for (std::size_t i = 0; i < names.size(); i += every)
    ticker->addTick(static_cast<double>(i), ToQt(names[i]).left(30));
  return ticker;
}

QSharedPointer<QCPAxisTicker> TickerOf(const ChartAxis& axis) {
  if (axis.meaning == AxisMeaning::Names) return NameTicker(axis.names);
  if (axis.meaning == AxisMeaning::Numbers) return QSharedPointer<QCPAxisTicker>(new QCPAxisTicker);
  QSharedPointer<QCPAxisTickerDateTime> ticker(new QCPAxisTickerDateTime);
  ticker->setDateTimeSpec(Qt::UTC);
  const bool days = axis.upper - axis.lower > 3.0 * 86400;
  ticker->setDateTimeFormat(days ? "yyyy-MM-dd" : "yyyy-MM-dd\nHH:mm:ss");
  return ticker;
}

void ColorAxis(QCPAxis& axis, const Tokens& tokens) {
  const QPen edge(tokens.edge);
  axis.setBasePen(edge);
  axis.setTickPen(edge);
  axis.setSubTickPen(edge);
  axis.setTickLabelColor(tokens.muted);
  axis.setLabelColor(tokens.text);
  axis.grid()->setPen(QPen(tokens.line));
  axis.grid()->setSubGridVisible(false);
  axis.grid()->setZeroLinePen(QPen(tokens.edge));
}

}  // namespace

ChartWidget::ChartWidget(QWidget* parent) : QCustomPlot(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
  axisRect()->setRangeDrag(Qt::Horizontal);
  axisRect()->setRangeZoom(Qt::Horizontal);
  setMinimumSize(200, 120);
  connect(xAxis, qOverload<const QCPRange&>(&QCPAxis::rangeChanged), this, [this] { WantView(); });
}

void ChartWidget::WantView() {
  if (!quiet_ && HasPicture()) emit viewWanted(xAxis->range().lower, xAxis->range().upper);
}

void ChartWidget::SetPicture(ChartPicture picture) {
  picture_ = std::move(picture);
  Draw();
}

QSize ChartWidget::PlotSize() const {
  const double ratio = devicePixelRatioF();
  return (QSizeF(axisRect()->size()) * ratio).toSize().expandedTo({1, 1});
}

void ChartWidget::Draw() {
  Paint(false);
  replot(QCustomPlot::rpQueuedReplot);
}

void ChartWidget::Paint(bool onPaper) {
  const Tokens& tokens = onPaper ? LightTokens() : CurrentTokens();
  quiet_ = true;
  clearPlottables();
  setBackground(QBrush(tokens.base));
  for (QCPAxis* axis : {xAxis, yAxis}) ColorAxis(*axis, tokens);
  SetAxis(*xAxis, picture_.xAxis);
  SetAxis(*yAxis, picture_.yAxis);
  if (picture_.marks == ChartMarks::Bars) AddBars(tokens.accent);
  else if (picture_.marks == ChartMarks::Line) AddLine(tokens.accent);
  else AddPoints(tokens.accent);
  quiet_ = false;
}

void ChartWidget::SetAxis(QCPAxis& axis, const ChartAxis& told) const {
  axis.setTicker(TickerOf(told));
  // Names that look like numbers with a power of ten are none.
  axis.setNumberFormat(told.meaning == AxisMeaning::Names ? "g" : "gb");
  axis.setLabel(ToQt(told.title));
  axis.setTickLabelRotation(told.meaning == AxisMeaning::Names && told.names.size() > 8 ? 60 : 0);
  axis.setRange(told.lower, told.upper);
}

void ChartWidget::AddLine(const QColor& color) {
  QCPGraph* graph = addGraph();
  graph->setAdaptiveSampling(false);
  graph->setPen(QPen(color, picture_.x.size() < fineLine ? 1.6 : 1.0));
  graph->setData(DataOf(picture_));
}

void ChartWidget::AddPoints(const QColor& color) {
  auto* cloud = new PointCloud(xAxis, yAxis, color, picture_.x.size() > fineLine);
  cloud->setData(DataOf(picture_));
}

void ChartWidget::AddBars(const QColor& color) {
  auto* bars = new QCPBars(xAxis, yAxis);
  bars->setWidth(picture_.width);
  bars->setPen(QPen(color));
  QColor inside = color;
  inside.setAlpha(170);
  bars->setBrush(inside);
  bars->setData(ToQVector(picture_.x), ToQVector(picture_.y), true);
}

// --- files ---------------------------------------------------------------------------------------

template <class Drawn>
void ChartWidget::OnPaper(Drawn draw) {
  Paint(true);
  draw();
  Draw();
}

QImage ChartWidget::Picture() {
  QImage image;
  OnPaper([&] { image = toPixmap(width(), height(), fileScale).toImage(); });
  return image;
}

QByteArray ChartWidget::FileContent(DrawingFormat format) {
  if (format == DrawingFormat::Png) return PngOf(Picture());
  QByteArray content;
  QBuffer file(&content);
  file.open(QIODevice::WriteOnly);
  OnPaper([&] {
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setViewBox(rect());
    svg.setSize(size());
    QPdfWriter pdf(&file);
    FillPage(pdf, QSizeF(size()));
    pdf.setResolution(72);
    QPaintDevice* device = &pdf;
    if (format == DrawingFormat::Svg) device = &svg;
    QCPPainter painter;
    if (!painter.begin(device)) return;
    painter.setMode(QCPPainter::pmVectorized);
    painter.setMode(QCPPainter::pmNoCaching);
    toPainter(&painter, width(), height());
    painter.end();
  });
  return content;
}

// --- what the user does --------------------------------------------------------------------------

void ChartWidget::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) Draw();
  QCustomPlot::changeEvent(event);
}

/// Another width has room for other points.
void ChartWidget::resizeEvent(QResizeEvent* event) {
  QCustomPlot::resizeEvent(event);
  WantView();
}

void ChartWidget::keyPressEvent(QKeyEvent* event) {
  const double size = xAxis->range().size();
  switch (event->key()) {
    case Qt::Key_Left: xAxis->moveRange(-size * step); break;
    case Qt::Key_Right: xAxis->moveRange(size * step); break;
    case Qt::Key_Plus: xAxis->scaleRange(closer); break;
    case Qt::Key_Minus: xAxis->scaleRange(1 / closer); break;
    default: return QCustomPlot::keyPressEvent(event);
  }
  event->accept();
}

}  // namespace tessel
