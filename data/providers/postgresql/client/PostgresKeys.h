#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "data/providers/ConnectionMode.h"
#include "data/providers/Provider.h"
#include "data/providers/postgresql/client/PqApi.h"
#include "data/providers/text/ServerKeys.h"

namespace tessel {

/// What a connection string asks to be connected to.
///
/// Keys are those of ServerKeyName and every keyword of libpq, which are handed on. "SSL Mode"
/// takes the modes of libpq, as "Verify Full" too. "Connect Timeout" is in seconds, 15 when
/// missing, 0 for none, and covers all servers when several are named. What is not given libpq
/// finds by itself in its environment variables, the service file and the password file. "Mode" is
/// ReadWrite (when missing) or ReadOnly: the server is asked to begin every transaction of the
/// session so.
struct PostgresTarget {
  std::vector<PqKeyword> keywords;
  std::chrono::seconds limit = defaultConnectTimeout;  ///< 0: none.
  ConnectionMode mode = ConnectionMode::ReadWrite;

  /// Raises Error for a key that is none and for a wrong number.
  [[nodiscard]] static PostgresTarget FromKeys(const ConnectionKeys& keys);

  /// User and password, where the connection string names none.
  void AddLogin(const Login& login);
  void SetDatabase(const std::string& name) { Set("dbname", name); }

 private:
  void AskForReadOnly(const std::vector<PqKeyword>& defaults);
  void Set(const std::string& name, const std::string& value);
  [[nodiscard]] PqKeyword* Find(const std::string& name);
};

}  // namespace tessel
