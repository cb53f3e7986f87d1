#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "contract/data/Connection.h"

namespace tessel {

/// User and password typed beside a connection string; they apply when the string names none.
struct TypedLogin {
  std::string user;
  std::string password;
};

/// Talks to a server in the background while a window goes on: opens a connection, reads the names
/// of its databases where that is wanted, and closes it. One talk at a time. UI thread; letting go
/// of it ends the talk, and nothing is heard of it any more.
class ServerTalk {
 public:
  /// What a talk came to.
  struct Result {
    std::optional<std::string> failure = {};  ///< The server's words; nothing: it went well.
    bool cancelled = false;
    std::vector<std::string> databases = {};  ///< Those it named, in its order.
  };
  using Told = std::function<void(const Result&)>;

  /// `data` outlives it.
  explicit ServerTalk(DataAccess& data) : data_(data) {}

  /// Begins a talk in place of the one before, of which nothing is heard any more. `told` is called
  /// once, from the event loop, or at once when the connection cannot even be begun. Databases
  /// that cannot be listed are no failure of a talk that was only to connect.
  void Start(const std::string& connectionString, const TypedLogin& login, bool listDatabases,
             Told told);
  [[nodiscard]] bool Busy() const { return operation_ != nullptr; }
  /// Asks the talk to end, without waiting: `told` hears that it was cancelled.
  void Cancel();
  /// The same, and nothing is heard of it any more.
  void Leave();

 private:
  void Opened(bool listDatabases);
  void Listed();
  void Conclude(Result result);
  void LetGo();
  [[nodiscard]] Result ResultOf(const Operation& operation) const;

  DataAccess& data_;
  std::shared_ptr<Connection> connection_;
  std::shared_ptr<Operation> operation_;     ///< Runs; null: nothing does.
  std::shared_ptr<QueryOperation> listing_;  ///< The same one while databases are read.
  Told told_;
};

}  // namespace tessel
