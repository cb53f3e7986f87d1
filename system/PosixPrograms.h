#pragma once

#include "contract/system/ProgramRunner.h"

namespace tessel {

/// Programs started by the operating system, with pipes to and from them.
class PosixPrograms final : public ProgramRunner {
 public:
  [[nodiscard]] std::string Find(std::string_view name) const override;
  [[nodiscard]] std::unique_ptr<RunningProgram> Start(const std::string& path,
                                                      const std::vector<std::string>& arguments,
                                                      std::string input) override;
};

}  // namespace tessel
