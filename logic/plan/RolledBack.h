#pragma once

#include <memory>
#include <string>

#include "contract/data/Connection.h"
#include "logic/program/dlgAsync.h"

namespace tessel {

/// A bracket around commands whose work is taken back: a transaction that is rolled back, or within
/// the user's own open one a savepoint. Whoever opens it has it taken back, however the work ends.
class RolledBack {
 public:
  /// Nothing runs yet. Both outlive it.
  RolledBack(dlgAsync& async, Connection& connection) : async_(async), connection_(connection) {}
  RolledBack(const RolledBack&) = delete;
  RolledBack& operator=(const RolledBack&) = delete;

  /// Begins. Raises Error(application), and runs nothing, where the user's transaction has failed
  /// or cannot be told; and Error when the database refuses.
  void Begin();
  /// Takes all back since Begin; does nothing when it did not begin. Raises Error(application),
  /// which says so, when that fails.
  void TakeBack();

 private:
  void Run(const std::string& command);

  dlgAsync& async_;
  Connection& connection_;
  bool begun_ = false;
  bool inSavepoint_ = false;
};

}  // namespace tessel
