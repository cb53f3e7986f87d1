#pragma once

#include <string>

#include "contract/base/Error.h"
#include "contract/system/ProgramRunner.h"

namespace tessel::test {

/// One program, "dot", that answers as the test says.
class MemoryPrograms final : public ProgramRunner {
 public:
  bool installed = true;
  int looksBeforeEnd = 0;  ///< So often it says that it still runs.
  std::string output = "<svg/>";
  std::string complaints;
  int exitStatus = 0;
  bool refuses = false;  ///< It cannot be started.

  std::string input;  ///< That it was given last.
  int running = 0;

  [[nodiscard]] std::string Find(std::string_view name) const override {
    return installed && name == "dot" ? "/usr/bin/dot" : "";
  }
  [[nodiscard]] std::unique_ptr<RunningProgram> Start(const std::string& /*path*/,
                                                      const std::vector<std::string>& /*arguments*/,
                                                      std::string text) override {
    if (refuses) throw Error(errorNumber::file, "Tessel", "/usr/bin/dot: Permission denied");
    input = std::move(text);
    return std::make_unique<Running>(*this);
  }

 private:
  class Running final : public RunningProgram {
   public:
    explicit Running(MemoryPrograms& owner) : owner_(owner) { ++owner_.running; }
    ~Running() override { --owner_.running; }
    [[nodiscard]] bool HasEnded(int /*milliseconds*/) override {
      return looks_++ >= owner_.looksBeforeEnd;
    }
    [[nodiscard]] const std::string& Output() const override { return owner_.output; }
    [[nodiscard]] const std::string& Complaints() const override { return owner_.complaints; }
    [[nodiscard]] int ExitStatus() const override { return owner_.exitStatus; }

   private:
    MemoryPrograms& owner_;
    int looks_ = 0;
  };
};

}  // namespace tessel::test
