#pragma once

namespace tessel {

/// From now on assistive tools are told of the program's windows by the objects of this folder, and
/// of changes by its rules. To be called when the application object is there; may be called again.
void InstallAccess();

}  // namespace tessel
