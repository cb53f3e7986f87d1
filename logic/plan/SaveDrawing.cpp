#include "logic/plan/SaveDrawing.h"

#include "contract/base/Error.h"
#include "contract/text/Ascii.h"
#include "logic/program/FileDialogs.h"

namespace tessel {

namespace {

bool EndsWith(const std::string& path, std::string_view ending) {
  return path.size() > ending.size() &&
         EqualNoCase(std::string_view(path).substr(path.size() - ending.size()), ending);
}

DrawingFormat FormatOf(const std::string& path) {
  if (EndsWith(path, ".svg")) return DrawingFormat::Svg;
  return EndsWith(path, ".pdf") ? DrawingFormat::Pdf : DrawingFormat::Png;
}

}  // namespace

void SaveDrawing(const Global& global, Window& window, const DrawingBox& drawing,
                 const std::string& name) {
  FileDialog& dialog = window.FileDialogNamed("dlgCommon");
  if (dialog.fileName.empty()) dialog.fileName = global.BesideExecutable(name + ".png");
  dialog.filter =
      "PNG Pictures (*.png)|*.png|SVG Drawings (*.svg)|*.svg|PDF Documents (*.pdf)|*.pdf";
  dialog.defaultExtension = "png";
  if (!ShowSaveFileDialog(dialog, global.TheFiles(), true)) return;
  try {
    global.TheFiles().ReplaceWhole(dialog.fileName, drawing.FileContent(FormatOf(dialog.fileName)),
                                   false);
  } catch (const Error& error) {
    Help(global).Show("The picture was not saved: " + error.Description(), MessageIcon::Critical);
  }
}

}  // namespace tessel
