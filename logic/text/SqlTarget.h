#pragma once

#include <string_view>

namespace tessel {

/// Where other windows put SQL text: the query window.
class SqlTarget {
 public:
  /// Inserts behind the selection of the query window, which is kept; the new text becomes the
  /// selected text.
  virtual void InsertText(std::string_view text) = 0;

 protected:
  ~SqlTarget() = default;
};

}  // namespace tessel
