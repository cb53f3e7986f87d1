#pragma once

#include <chrono>

#include "data/providers/ConnectionMode.h"
#include "data/providers/Provider.h"
#include "data/providers/mariadb/MariaApi.h"
#include "data/providers/text/ServerKeys.h"

namespace tessel {

/// What a connection string asks to be connected to.
///
/// Keys are those of ServerKeyName; "Socket", a file; "SSL CA", "SSL Cert" and "SSL Key", files.
/// "SSL Mode" is "Disabled" (when missing), "Required" or "Verify Full". "Connect Timeout" is in
/// seconds, 15 when missing, 0 for none. "Mode" is ReadWrite (when missing) or ReadOnly: the server
/// begins every transaction of the session so.
struct MariaTarget {
  MariaLogin login;
  std::chrono::seconds limit = defaultConnectTimeout;  ///< 0: none.
  ConnectionMode mode = ConnectionMode::ReadWrite;
  bool namesUser = false;
  bool namesPassword = false;

  /// Raises Error for a key that is none and for a wrong value.
  [[nodiscard]] static MariaTarget FromKeys(const ConnectionKeys& keys);

  /// User and password, where the connection string names none.
  void AddLogin(const Login& given);
};

}  // namespace tessel
