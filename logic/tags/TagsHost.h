#pragma once

namespace tessel {

/// What the tags panel asks of the frame.
class TagsHost {
 public:
  virtual void FocusQueryWindow() = 0;

 protected:
  ~TagsHost() = default;
};

}  // namespace tessel
