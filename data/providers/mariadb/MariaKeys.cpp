#include "data/providers/mariadb/MariaKeys.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr const char* source = "MariaDB";

struct TextKey {
  std::string_view name;
  std::string MariaLogin::*part;
};

constexpr TextKey textKeys[] = {
    {"Server", &MariaLogin::host},    {"Database", &MariaLogin::database},
    {"User ID", &MariaLogin::user},   {"Password", &MariaLogin::password},
    {"Socket", &MariaLogin::socket},  {"Application Name", &MariaLogin::applicationName},
    {"SSL CA", &MariaLogin::sslCa},   {"SSL Cert", &MariaLogin::sslCert},
    {"SSL Key", &MariaLogin::sslKey},
};

[[noreturn]] void RaiseWrongValue(const ServerKey& key, const std::string& wanted) {
  throw Error(errorNumber::application, source,
              key.name + " must be " + wanted + ", not '" + key.value + "'.");
}

unsigned ToPort(const ServerKey& key) {
  constexpr unsigned most = 65535;
  unsigned port = 0;
  const char* end = key.value.data() + key.value.size();
  const auto [stop, error] = std::from_chars(key.value.data(), end, port);
  if (error != std::errc() || stop != end || port == 0 || port > most)
    RaiseWrongValue(key, "a number up to 65535");
  return port;
}

void ApplySslMode(const ServerKey& key, MariaLogin& login) {
  const std::string mode = ToSslMode(key.value);
  login.verifyServer = mode == "verifyfull" || mode == "verifyidentity";
  login.useSsl = login.verifyServer || mode == "required" || mode == "require";
  if (!login.useSsl && mode != "disabled" && mode != "disable" && mode != "none")
    RaiseWrongValue(key, "Disabled, Required or Verify Full");
}

void Apply(const ServerKey& key, MariaTarget& target) {
  const auto* text = std::ranges::find_if(
      textKeys, [&](const TextKey& known) { return EqualNoCase(known.name, key.name); });
  if (text != std::end(textKeys)) target.login.*(text->part) = key.value;
  else if (key.name == "Port") target.login.port = ToPort(key);
  else if (key.name == "Mode") target.mode = ToConnectionMode(key.value, source, false);
  else if (key.name == "SSL Mode") ApplySslMode(key, target.login);
  else if (key.name == "Connect Timeout") target.limit = ToConnectTimeout(key.value, source);
  else
    RaiseUnknownKey(key.name, source,
                    "Server, Port, Socket, Database, User ID, Password, SSL Mode, SSL CA, SSL "
                    "Cert, SSL Key, Connect Timeout, Application Name and Mode");
  target.namesUser = target.namesUser || key.name == "User ID";
  target.namesPassword = target.namesPassword || key.name == "Password";
}

}  // namespace

MariaTarget MariaTarget::FromKeys(const ConnectionKeys& keys) {
  MariaTarget target;
  for (const ServerKey& key : ServerKeysOf(keys)) Apply(key, target);
  return target;
}

void MariaTarget::AddLogin(const Login& given) {
  if (!namesUser) login.user = given.user;
  if (!namesPassword) login.password = given.password;
}

}  // namespace tessel
