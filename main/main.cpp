// Puts the program together: the desktop, the databases, the files, and the logic that works on
// them.

#include <cstdlib>
#include <filesystem>
#include <memory>

#include "data/cursor/DataAccessObjects.h"
#include "desktop/QtDesktop.h"
#include "desktop/keyring/QtKeyring.h"
#include "logic/app/Main.h"
#include "system/EndSignals.h"
#include "system/Executable.h"
#include "system/PosixFiles.h"
#include "system/PosixPrograms.h"
#include "system/ThreadLine.h"
#include "system/sheets/XlsxFile.h"

int main(int argc, char* argv[]) {
  using namespace tessel;
  const std::string executable = ExecutablePath();
  QtDesktop desktop(argc, argv);
  desktop.FollowColors();
  const EndSignals endSignals;
  desktop.EndWhenReadable(endSignals.Descriptor());
  PosixFiles files;
  DataAccessObjects data(desktop.Events());
  QtKeyring keyring;
  XlsxFiles sheets;
  PosixPrograms programs;
  const std::string folder = std::filesystem::path(executable).parent_path().string();
  auto program = std::make_unique<Program>(Platform{desktop,
                                                    data,
                                                    files,
                                                    folder,
                                                    executable,
                                                    TESSEL_VERSION,
                                                    {},
                                                    &keyring,
                                                    [] { return std::make_unique<ThreadLine>(); },
                                                    &sheets,
                                                    &programs});
  desktop.Defer([&] { program->Main(); });
  const int status = desktop.Run();
  program.reset();
  // A driver that hangs keeps its thread: such a process leaves without tidying up around it.
  if (data.HasAbandonedWork()) std::_Exit(status);
  return status;
}
