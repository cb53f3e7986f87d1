#pragma once

namespace tessel {

/// What the query window asks of the frame.
class QueryHost {
 public:
  /// Sends the selected SQL to every records window, shown for review first when `preview`.
  virtual void DoSQL(bool preview) = 0;
  /// Gives the focus to the records window opened first; nothing happens without one.
  virtual void FocusFirstRecordsWindow() = 0;
  /// Gives the focus to the schema browser when the sidebar shows.
  virtual void FocusBrowser() = 0;
  /// Takes a key that does the same in every window; false for any other.
  virtual bool HandleFrameKey(int keyCode, int shift) = 0;

 protected:
  ~QueryHost() = default;
};

}  // namespace tessel
