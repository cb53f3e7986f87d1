#pragma once

#include <string>

#include "contract/base/Color.h"

namespace tessel {

/// One saved connection.
struct SavedConnection {
  std::string connectionString;
  std::string caption;
  Color backColor = color::windowBackground;
  Color foreColor = color::windowText;
  bool operator==(const SavedConnection&) const = default;
};

}  // namespace tessel
