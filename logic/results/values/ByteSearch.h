#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "contract/desktop/Window.h"
#include "contract/desktop/controls/values/HexBox.h"

namespace tessel {

/// Finds bytes in a hex box, piece by piece, so that the window goes on in a value of any size. A
/// search goes from the current byte to the end and from the beginning on to where it began.
class ByteSearch {
 public:
  /// `said` is told what came of it, or how far it is, in words for the user.
  ByteSearch(Window& window, HexBox& box, std::function<void(const std::string&)> said);

  /// The bytes that are shown now; they are asked for again with each piece.
  void SetSource(HexBox::Source source);
  /// Begins to look for these bytes, which are not empty; they are kept for Again.
  void Find(std::string wanted);
  /// The next or the previous place of those that were looked for last; false when there are none.
  bool Again();
  /// Ends a search that goes on; false when there is none.
  bool Stop();

 private:
  void Begin();
  void Tick();
  void Look(std::size_t from, std::size_t to);
  void End(const std::string& said);

  HexBox& box_;
  Timer& timer_;
  std::function<void(const std::string&)> said_;
  HexBox::Source source_;
  std::string wanted_;
  std::size_t start_ = 0;   ///< Where it began.
  std::size_t looked_ = 0;  ///< Bytes looked through since.
};

}  // namespace tessel
