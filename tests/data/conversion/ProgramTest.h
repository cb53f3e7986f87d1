#pragma once

#include <fstream>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "tests/data/servers/Process.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

/// A test whose files are read by programs of others.
template <class Base>
class ProgramTest : public Base {
 protected:
  /// What the program prints; fails the test when it ends with an error.
  std::string Output(const CommandLine& command, const std::string& input = "/dev/null") {
    const std::string file = folder_.File("output-" + std::to_string(++outputs_));
    try {
      RunCommand(command, {input, file});
    } catch (const std::runtime_error& error) {
      ADD_FAILURE() << error.what();
    }
    std::stringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
  }
  static std::string Script(const char* name) {
    return std::string(TESSEL_DATA_FIXTURES) + "/../conversion/" + name;
  }

  TemporaryFolder folder_;

 private:
  int outputs_ = 0;
};

}  // namespace tessel::test
