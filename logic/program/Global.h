#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "contract/base/Files.h"
#include "contract/data/Connection.h"
#include "contract/desktop/Desktop.h"
#include "contract/desktop/Keyring.h"
#include "contract/system/ProgramRunner.h"
#include "contract/system/SheetFile.h"
#include "contract/system/WorkLine.h"

namespace tessel {

/// What `main` gives to the program. The objects outlive it.
struct Platform {
  Desktop& desktop;
  DataAccess& data;
  Files& files;
  std::string appPath;     ///< Folder of the running executable, without a separator at its end.
  std::string executable;  ///< Full path of the running executable.
  std::string version;     ///< Of the program, for example "1.0.0".
  /// Name of the registered class number `index` (from 0), or nothing behind the last one. May be
  /// empty: no registry.
  std::function<std::optional<std::string>(int index)> registeredClass;
  /// Where passwords may be kept; null: nowhere.
  Keyring* keyring = nullptr;
  /// A line of work on a thread of its own. May be empty: work is done where it is given then.
  std::function<std::unique_ptr<WorkLine>()> makeWorkLine = {};
  /// What makes files of sheets; null: there are none.
  SheetFiles* sheets = nullptr;
  /// Starts other programs; null: none can be started.
  ProgramRunner* programs = nullptr;
};

/// Raises Error(application) from "Tessel": the way in which modules report a failure to their
/// callers.
[[noreturn]] void RaiseAppError(std::string description);

/// What is process-wide: the platform, the places of the program's files, the provider for Access
/// files. One object, passed down.
class Global {
 public:
  explicit Global(Platform platform);

  [[nodiscard]] Desktop& TheDesktop() const { return platform_.desktop; }
  [[nodiscard]] DataAccess& Data() const { return platform_.data; }
  [[nodiscard]] Files& TheFiles() const { return platform_.files; }
  /// Always one that can be asked; where there is none it says so.
  [[nodiscard]] Keyring& TheKeyring() const { return *platform_.keyring; }
  /// A line of work that nobody else uses.
  [[nodiscard]] std::unique_ptr<WorkLine> MakeWorkLine() const;
  /// Null where no files of sheets can be made.
  [[nodiscard]] SheetFiles* Sheets() const { return platform_.sheets; }
  /// Null where no other program can be started.
  [[nodiscard]] ProgramRunner* ThePrograms() const { return platform_.programs; }
  [[nodiscard]] const std::string& Executable() const { return platform_.executable; }
  [[nodiscard]] const std::string& Version() const { return platform_.version; }

  /// Full path of a file that lies beside the executable.
  [[nodiscard]] std::string BesideExecutable(std::string_view name) const;
  [[nodiscard]] const std::string& SettingsFilePath() const { return settingsFilePath_; }
  [[nodiscard]] const std::string& LegacySettingsFilePath() const {
    return legacySettingsFilePath_;
  }
  [[nodiscard]] const std::string& HelpFile() const { return helpFile_; }
  [[nodiscard]] const std::string& JetProviderName() const { return jetProviderName_; }

  /// Picks the highest Jet provider version among the registered classes; never fails.
  void DetectJetProvider();
  void SetHelpFile();

 private:
  Platform platform_;
  std::shared_ptr<Keyring> noKeyring_;  ///< In use when the platform gives none.
  std::string settingsFilePath_;
  std::string legacySettingsFilePath_;
  std::string helpFile_;
  std::string jetProviderName_;
};

}  // namespace tessel
