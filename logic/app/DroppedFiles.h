#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "logic/program/Global.h"
#include "logic/query/frmMain.h"

namespace tessel {

/// What becomes of files that are dropped on the program: SQL is opened as the Open command does
/// it, a database file is connected to, and of others is said that they are neither.
class DroppedFiles {
 public:
  /// `connect` connects to a database file, and asks what there is to ask.
  DroppedFiles(const Global& global, frmMain& query,
               std::function<void(const std::string& path)> connect);

 private:
  void Take(const std::vector<std::string>& paths);
  void TellOther(const std::string& path) const;

  const Global& global_;
  frmMain& query_;
  std::function<void(const std::string& path)> connect_;
  std::shared_ptr<const void> alive_ = std::make_shared<int>();  ///< Deferred work checks it.
};

/// The connection string of a database file.
[[nodiscard]] std::string ConnectionToFile(const std::string& path);

}  // namespace tessel
