#include "logic/plan/diagram/Diagram.h"

#include <algorithm>

#include "contract/base/Error.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/ChartBox.h"
#include "contract/desktop/controls/Label.h"
#include "logic/plan/SaveDrawing.h"

namespace tessel {

namespace {

constexpr const char* program = "dot";
constexpr int millisecondsAtOnce = 5;
constexpr int zoomStep = 25;  ///< Percent.
constexpr int smallest = 10;
constexpr int largest = 400;

std::string Counted(std::size_t count, const char* what) {
  return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

std::string StatusText(const DiagramText& text) {
  std::string status = Counted(text.tables, "table") + ", " + Counted(text.keys, "foreign key");
  if (text.leftOut > 0)
    status += "; not drawn: " + Counted(text.leftOut, "table") + " without foreign keys";
  return status;
}

/// The buttons of a window with a diagram.
void WireZoom(Window& window, DiagramBox& diagram) {
  const auto zoom = [&diagram](int change) {
    diagram.SetZoom(std::clamp(diagram.Zoom() + change, smallest, largest));
  };
  window.Find<Button>("cmdZoomIn").Click = [zoom] { zoom(zoomStep); };
  window.Find<Button>("cmdZoomOut").Click = [zoom] { zoom(-zoomStep); };
  window.Find<Button>("cmdFit").Click = [&diagram] { diagram.SetZoom(0); };
}

}  // namespace

void Diagram::Show(const Structure* structure, const std::string& caption) {
  if (structure == nullptr || structure->Tables().empty()) {
    help_.Show("No tables are known whose keys could be drawn: load the schema of a database that "
               "tells them (right-click, Load Schema from Database).",
               MessageIcon::Information);
    return;
  }
  const DiagramText text = MakeDiagramText(*structure);
  if (const std::optional<std::string> svg = LaidOut(text.text)) ShowDrawing(*svg, text, caption);
}

std::optional<std::string> Diagram::LaidOut(const std::string& text) {
  ProgramRunner* programs = global_.ThePrograms();
  const std::string path = programs == nullptr ? std::string() : programs->Find(program);
  if (path.empty()) {
    help_.Show(
        "The diagram is laid out by the program \"dot\" of Graphviz, which is not installed: "
        "install the package graphviz, and try again.",
        MessageIcon::Information);
    return std::nullopt;
  }
  try {
    const std::unique_ptr<RunningProgram> run = programs->Start(path, {"-Tsvg"}, text);
    async_.InitProcess("Laying out the diagram...");
    const UnloadAtEnd unload(async_);
    while (!run->HasEnded(millisecondsAtOnce))
      if (!async_.Yield()) return std::nullopt;
    if (run->ExitStatus() == 0) return run->Output();
    help_.Show("The diagram could not be laid out: " + run->Complaints(), MessageIcon::Exclamation);
  } catch (const Error& error) {
    help_.Show("The diagram could not be laid out: " + error.Description(),
               MessageIcon::Exclamation);
  }
  return std::nullopt;
}

void Diagram::ShowDrawing(const std::string& svg, const DiagramText& text,
                          const std::string& caption) {
  const std::unique_ptr<Window> window = global_.TheDesktop().MakeWindow("dlgDiagram");
  auto& diagram = window->Find<DiagramBox>("dgmDiagram");
  window->SetCaption(caption + " - Diagram");
  window->Find<Label>("lblDiagram").SetCaption(StatusText(text));
  if (!diagram.SetSvg(svg))
    window->Find<Label>("lblDiagram").SetCaption("What dot gave cannot be shown: it is no SVG.");
  WireZoom(*window, diagram);
  window->Find<Button>("cmdSave").Click = [&] {
    SaveDrawing(global_, *window, diagram, "diagram");
  };
  window->Find<Button>("cmdCopy").Click = [&] { diagram.CopyPicture(); };
  window->Find<Button>("cmdClose").Click = [&] { window->Hide(); };
  window->ShowModal(&frame_);
  window->Unload();
}

}  // namespace tessel
