#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "contract/base/Zoom.h"
#include "contract/desktop/controls/Control.h"

namespace tessel {

/// Bytes in lines of an offset, hexadecimal digits and characters, to be looked at and not to be
/// changed. The bytes belong to somebody else, who is asked for them whenever some are needed: only
/// lines that are painted are formatted, so their number does not matter. Offsets are 0-based.
///
/// One byte is the current one, and the selection reaches from where it began to that byte, both
/// included: without an extent the current byte alone is selected. Left, Right, Up, Down, PageUp,
/// PageDown, Home and End move (with Ctrl, Home and End go to the first and the last byte), with
/// Shift they extend the selection, and Ctrl+A selects everything; so do a click and dragging. Ctrl
/// with plus, minus, 0 and the wheel zoom. Which keys find, copy or go somewhere is the owner's.
class HexBox : public Control {
 public:
  using Control::Control;

  /// Gives the bytes as they are now; what it gave before need no longer be there when it is asked
  /// again. It raises nothing and may give none.
  using Source = std::function<std::span<const std::byte>()>;

  /// Bytes of a line where there is room for them; where there is less, half as many, or a quarter.
  static constexpr int longestLine = 16;

  /// Shows other bytes from the first on; an empty function shows none. CaretMoved follows.
  void SetSource(Source source);
  /// The source has other bytes now: places behind their end go to it, all else stays.
  void Refresh();
  /// How many there are now.
  [[nodiscard]] std::int64_t Size() const { return static_cast<std::int64_t>(Bytes().size()); }

  /// The current byte; 0 where there are none.
  [[nodiscard]] std::int64_t Caret() const { return caret_; }
  [[nodiscard]] std::int64_t SelStart() const;
  /// At least 1, but 0 where there are no bytes.
  [[nodiscard]] std::int64_t SelLength() const;
  /// Selects `length` bytes and makes the last of them the current one, brought into sight. Beyond
  /// the end is taken as the end, fewer than one byte as one. CaretMoved follows.
  void Select(std::int64_t start, std::int64_t length);

  /// Bytes of a line as it is shown now.
  [[nodiscard]] virtual int LineLength() const = 0;
  /// A line as it is painted, its three parts two blanks apart:
  /// "00000010  48 65 6C 6C 6F 00 ...  Hello. ...". What is no character of ASCII is ".".
  [[nodiscard]] std::string LineText(std::int64_t line) const;

  /// The size of what it shows, in percent; at first ordinaryZoom. Setting it takes the nearest
  /// that zoomSteps holds. Raises nothing.
  [[nodiscard]] virtual int Zoom() const = 0;
  virtual void SetZoom(int percent) = 0;

  Event<> CaretMoved;  ///< Another byte is the current one, or more or fewer are selected.

 protected:
  /// The bytes now; valid until the source is asked again.
  [[nodiscard]] std::span<const std::byte> Bytes() const;
  /// Makes a byte the current one as the user does; `extend` keeps where the selection began.
  void MoveTo(std::int64_t offset, bool extend);
  /// Does what a key that moves does, where a page has so many lines. False for any other key.
  bool TakeMove(int keyCode, int shift, std::int64_t linesOnPage);

  /// Paints anew: other bytes, or another selection.
  virtual void WriteShown() = 0;
  /// Brings the current byte into sight.
  virtual void WriteInSight() = 0;

 private:
  [[nodiscard]] std::int64_t Clamped(std::int64_t offset) const;
  /// Nothing for a key that does not move.
  [[nodiscard]] std::int64_t TargetOf(int keyCode, bool ctrl, std::int64_t linesOnPage) const;
  void Tell();

  Source source_;
  std::int64_t caret_ = 0;
  std::int64_t anchor_ = 0;  ///< Where the selection began.
};

}  // namespace tessel
