#pragma once

#include <memory>

#include "logic/app/frmMDI.h"
#include "logic/program/Global.h"
#include "logic/query/completion/vocab.h"
#include "logic/tags/TagStore.h"

namespace tessel {

/// One run of the program.
class Program {
 public:
  explicit Program(Platform platform) : global_(std::move(platform)), vocabulary_(global_) {}

  /// The start-up sequence. Returns once the frame is shown and its first dialog has been answered;
  /// the frame's events drive the program from then on.
  void Main();

  [[nodiscard]] Global& TheGlobal() { return global_; }
  [[nodiscard]] frmMDI& Frame() { return *frame_; }

 private:
  Global global_;
  Vocabulary vocabulary_;
  TagStore tags_;
  std::unique_ptr<frmMDI> frame_;
};

}  // namespace tessel
