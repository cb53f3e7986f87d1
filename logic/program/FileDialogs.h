#pragma once

#include "contract/base/Files.h"
#include "contract/desktop/CommonDialogs.h"

namespace tessel {

/// Asks for an existing file; false when the user cancelled.
[[nodiscard]] bool ShowOpenFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir);
/// Asks for a file to write, with a question before one is replaced; false when the user cancelled.
[[nodiscard]] bool ShowSaveFileDialog(FileDialog& dialog, const Files& files, bool allowChangeDir);

}  // namespace tessel
