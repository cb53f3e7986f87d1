#include "logic/plan/chart/dlgChart.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/Button.h"
#include "logic/plan/SaveDrawing.h"

namespace tessel {

namespace {

constexpr std::int64_t sliceMilliseconds = 8;
constexpr std::int64_t rowsBetweenLooks = 1024;
constexpr const char* kindNames[] = {"Line", "Bars", "Scatter", "Histogram"};

bool TakesRowNumber(ChartKind kind) { return kind == ChartKind::Line || kind == ChartKind::Points; }

}  // namespace

dlgChart::dlgChart(const Global& global)
    : global_(global),
      window_(global.TheDesktop().MakeWindow("dlgChart")),
      cboKind_(window_->Find<ComboBox>("cboKind")),
      cboX_(window_->Find<ComboBox>("cboX")),
      cboY_(window_->Find<ComboBox>("cboY")),
      chtChart_(window_->Find<ChartBox>("chtChart")),
      lblChart_(window_->Find<Label>("lblChart")),
      tmrRead_(window_->TimerNamed("tmrRead")) {
  for (const char* name : kindNames) cboKind_.AddItem(name);
  cboKind_.Click = [this] { ListColumns(); };
  for (ComboBox* box : {&cboX_, &cboY_})
    box->Click = [this] {
      if (!listing_) BeginReading();
    };
  tmrRead_.SetInterval(1);
  tmrRead_.Tick = [this] { ReadSlice(); };
  chtChart_.ViewChanged = [this](double lower, double upper) { ShowPart({lower, upper}); };
  window_->Find<Button>("cmdWhole").Click = [this] {
    if (chart_ != nullptr && read_ == count_) ShowPart(chart_->Whole());
  };
  window_->Find<Button>("cmdSave").Click = [this] {
    SaveDrawing(global_, *window_, chtChart_, "chart");
  };
  window_->Find<Button>("cmdCopy").Click = [this] { chtChart_.CopyPicture(); };
  window_->Find<Button>("cmdClose").Click = [this] { window_->Hide(); };
}

void dlgChart::Go(Window& owner, const std::string& caption, std::shared_ptr<Recordset> rows) {
  rows_ = std::move(rows);
  count_ = rows_->RecordCount();
  window_->SetCaption(caption + " - Chart");
  cboKind_.SetListIndex(0);
  window_->ShowModal(&owner);
  tmrRead_.SetEnabled(false);
  window_->Unload();
}

/// The columns that suit the kind. The first ones that differ are chosen.
void dlgChart::ListColumns() {
  listing_ = true;
  xColumns_ = XColumns(Kind(), rows_->Fields());
  yColumns_ = YColumns(Kind(), rows_->Fields());
  if (TakesRowNumber(Kind())) xColumns_.insert(xColumns_.begin(), noColumn);
  if (Kind() == ChartKind::Bars) yColumns_.insert(yColumns_.begin(), noColumn);
  cboX_.Clear();
  cboY_.Clear();
  for (const std::size_t column : xColumns_)
    cboX_.AddItem(column == noColumn ? "(row number)" : rows_->Fields()[column].name);
  for (const std::size_t column : yColumns_)
    cboY_.AddItem(column == noColumn ? "(number of rows)" : rows_->Fields()[column].name);
  cboY_.SetEnabled(!yColumns_.empty());
  if (!xColumns_.empty()) cboX_.SetListIndex(0);
  if (!yColumns_.empty()) cboY_.SetListIndex(0);
  listing_ = false;
  BeginReading();
}

ChartChoice dlgChart::Choice() const {
  ChartChoice choice{Kind(), noColumn, noColumn};
  if (cboX_.ListIndex() >= 0) choice.x = xColumns_[static_cast<std::size_t>(cboX_.ListIndex())];
  if (cboY_.ListIndex() >= 0) choice.y = yColumns_[static_cast<std::size_t>(cboY_.ListIndex())];
  return choice;
}

// --- reading -------------------------------------------------------------------------------------

void dlgChart::BeginReading() {
  const bool needsY = Kind() == ChartKind::Line || Kind() == ChartKind::Points;
  line_.reset();
  chart_.reset();
  if (xColumns_.empty() || (needsY && yColumns_.empty())) {
    tmrRead_.SetEnabled(false);
    chtChart_.SetPicture({});
    lblChart_.SetCaption("These rows have no column of numbers for such a chart.");
    return;
  }
  chart_ = std::make_unique<ChartRows>(Choice(), rows_->Fields());
  read_ = 0;
  isEnded_ = false;
  tmrRead_.SetEnabled(true);
  ReadSlice();
}

/// As many rows as a few milliseconds hold, so that the window stays alive.
void dlgChart::ReadSlice() {
  if (line_ != nullptr) return EndReading();
  const Clock& clock = global_.TheDesktop().TheClock();
  const std::int64_t end = clock.Milliseconds() + sliceMilliseconds;
  try {
    const std::int64_t there = std::min(count_, rows_->RecordCount());
    while (read_ < there && (read_ % rowsBetweenLooks != 0 || clock.Milliseconds() < end))
      chart_->Take(*rows_, read_++);
    count_ = there;
  } catch (const Error& error) {
    tmrRead_.SetEnabled(false);
    lblChart_.SetCaption("The rows cannot be read: " + error.Description());
    return;
  }
  if (read_ == count_) return EndReading();
  lblChart_.SetCaption("Reading rows: " + std::to_string(read_ * 100 / count_) + " %");
}

/// To end the chart takes a while; the timer asks whether it is done.
void dlgChart::EndReading() {
  if (line_ == nullptr) {
    line_ = global_.MakeWorkLine();
    line_->Add([this] { chart_->End(); });
  }
  if (line_->Wait(0, 0)) ShowWhole();
}

void dlgChart::ShowWhole() {
  line_.reset();
  tmrRead_.SetEnabled(false);
  isEnded_ = true;
  lblChart_.SetCaption(StatusText());
  ShowPart(chart_->Whole());
}

std::string dlgChart::StatusText() const {
  std::string text = std::to_string(count_) + (count_ == 1 ? " row" : " rows");
  if (chart_->LeftOut() > 0)
    text += ", " + std::to_string(chart_->LeftOut()) + " of them without a number: not drawn";
  if (chart_->PutTogether() > 0)
    text +=
        "; the last " + std::to_string(chart_->PutTogether()) + " names stand as one bar, (others)";
  return text;
}

void dlgChart::ShowPart(const Range& view) {
  if (chart_ == nullptr || !isEnded_ || !(view.lower < view.upper)) return;
  chtChart_.SetPicture(chart_->Picture(view, chtChart_.PlotWidth(), chtChart_.PlotHeight()));
}

}  // namespace tessel
