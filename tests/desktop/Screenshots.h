#pragma once

#include <string>

namespace tessel::test {

/// Draws every window of the program, filled with sample data, as a picture in the folder, to be
/// looked at. Returns the exit code of the program.
int DrawScreenshots(const std::string& folder, bool dark);

}  // namespace tessel::test
