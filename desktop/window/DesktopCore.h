#pragma once

#include <exception>
#include <functional>
#include <map>
#include <string>

#include "desktop/look/Scale.h"
#include "desktop/services/DeferQueue.h"
#include "desktop/services/EventLoops.h"
#include "desktop/window/FocusTracker.h"

namespace tessel {

class DocumentFrame;

/// What all windows of a desktop share.
struct DesktopCore {
  explicit DesktopCore(std::function<void(std::exception_ptr)> show)
      : showFailure(std::move(show)), deferred(loops, showFailure) {}

  Scale scale;
  EventLoops loops;
  FocusTracker focus;
  /// Shows what a handler let out.
  std::function<void(std::exception_ptr)> showFailure;
  DeferQueue deferred;
  /// Shows help on a context number, or, when that is 0, on the form of that name.
  std::function<void(const Window&)> showHelpOn;
  /// Where each file dialog of each form was used last; empty before.
  std::map<std::string, std::string> lastFolders;
  DocumentFrame* frame = nullptr;  ///< The frame that is loaded, if any.
};

}  // namespace tessel
