#pragma once

#include <string>
#include <string_view>

#include "contract/base/Clock.h"
#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/TextBox.h"

namespace tessel {

/// Grounds of the status line by kind of message.
namespace statusColor {
inline constexpr Color plain = 0x000000;
inline constexpr Color records = 0xBF0000;
inline constexpr Color recordsAffected = 0x00BF00;
inline constexpr Color completed = 0x007F00;
inline constexpr Color interrupted = 0x00007F;
inline constexpr Color errorsOccurred = 0x0000FF;
inline constexpr Color failure = 0x0000BF;
}  // namespace statusColor

/// The time-stamped, coloured line of messages of a records window.
class StatusLine {
 public:
  StatusLine(const Clock& clock, TextBox& box, Button& errorsButton)
      : clock_(clock), box_(box), errorsButton_(errorsButton) {}

  struct Options {
    bool append = false;  ///< Behind the text shown; the colours are combined bit by bit.
    bool grow = false;    ///< As high as its lines need, as far as there is room.
    bool showErrorsButton =
        false;  ///< Whether the button that lists the connection's errors shows.
  };

  void SetStatus(std::string_view text, Color color, Options options);
  /// The inside height of the window, in twips: the room there is to grow.
  void SetWindowHeight(int twips) { windowHeight_ = twips; }

 private:
  [[nodiscard]] int GrownHeight() const;

  const Clock& clock_;
  TextBox& box_;
  Button& errorsButton_;
  int windowHeight_ = 0;
};

}  // namespace tessel
