#pragma once

#include <memory>

#include "desktop/controls/WidgetFace.h"

namespace tessel {

/// The control that a widget of a form stands for; null for a widget that only holds others.
[[nodiscard]] std::unique_ptr<Control> MakeControl(const ControlSite& site);

}  // namespace tessel
