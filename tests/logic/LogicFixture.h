#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "contract/desktop/controls/Button.h"
#include "contract/desktop/controls/Label.h"
#include "logic/program/Global.h"
#include "system/PosixFiles.h"
#include "tests/headless/HeadlessDesktop.h"
#include "tests/support/FakeFiles.h"
#include "tests/support/MemoryData.h"
#include "tests/support/MemoryKeyring.h"
#include "tests/support/MemoryPrograms.h"
#include "tests/support/TemporaryFolder.h"

namespace tessel::test {

/// A program without windows yet: headless desktop, data in memory, and a folder of its own in
/// which it lies.
class LogicFixture : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  HeadlessDesktop desktop;
  MemoryData data{desktop.Events()};
  PosixFiles realFiles;
  FakeFiles files{realFiles};
  MemoryKeyring keyring{desktop.Events()};
  MemoryPrograms programs;
  std::vector<std::string> classes;  ///< Registered class names.
  Global global{Platform{desktop,
                         data,
                         files,
                         folder.Path().string(),
                         folder.File("Tessel"),
                         "1.0",
                         [this](int index) -> std::optional<std::string> {
                           if (index >= static_cast<int>(classes.size())) return std::nullopt;
                           return classes[static_cast<std::size_t>(index)];
                         },
                         &keyring,
                         {},
                         nullptr,
                         &programs}};

  /// From now on notes whether the progress window says that it waits inside a provider, as it does
  /// where that is of one thread.
  void NoteWaiting() {
    desktop.OnProcessPending([this](int) {
      const auto windows = desktop.WindowsOf("dlgAsync");
      if (windows.empty()) return;
      waited = waited || (windows.front()->Find<Label>("lblTimer").Caption() == "wait..." &&
                          !windows.front()->Find<Button>("cmdCancel").Enabled());
    });
  }
  bool waited = false;

  /// The whole of a file of the program's folder.
  [[nodiscard]] std::string Content(const std::string& name) const {
    return realFiles.ReadWhole(folder.File(name));
  }
};

}  // namespace tessel::test
