#include "data/providers/postgresql/client/PostgresKeys.h"

#include <algorithm>
#include <string_view>

#include "contract/text/Ascii.h"

namespace tessel {

namespace {

constexpr const char* source = "PostgreSQL";

struct KeyWord {
  std::string_view key;  ///< As of ServerKeyName.
  std::string_view keyword;
};

constexpr KeyWord keyWords[] = {
    {"Server", "host"},
    {"Port", "port"},
    {"Database", "dbname"},
    {"User ID", "user"},
    {"Password", "password"},
    {"SSL Mode", "sslmode"},
    {"Connect Timeout", "connect_timeout"},
    {"Application Name", "application_name"},
};

/// "verify-full" for "verifyfull".
std::string LibpqMode(const std::string& value) {
  std::string mode = ToSslMode(value);
  constexpr std::string_view verify = "verify";
  if (mode.starts_with(verify)) mode.insert(verify.size(), "-");
  return mode;
}

std::string KeywordOf(const std::string& key, const std::vector<PqKeyword>& known) {
  const auto* own = std::ranges::find(keyWords, key, &KeyWord::key);
  if (own != std::end(keyWords)) return std::string(own->keyword);
  const auto found = std::ranges::find_if(
      known, [&](const PqKeyword& word) { return EqualNoCase(word.name, key); });
  if (found != known.end()) return found->name;
  std::string list;
  for (const KeyWord& word : keyWords) list.append(word.key).append(", ");
  RaiseUnknownKey(key, source, list + "Mode and the keywords of libpq");
}

}  // namespace

PostgresTarget PostgresTarget::FromKeys(const ConnectionKeys& keys) {
  const std::vector<PqKeyword> known = PqDefaults();
  PostgresTarget target;
  for (const ServerKey& key : ServerKeysOf(keys)) {
    if (key.name == "Mode") {
      target.mode = ToConnectionMode(key.value, source, false);
      continue;
    }
    const std::string keyword = KeywordOf(key.name, known);
    if (target.Find(keyword) != nullptr) continue;
    target.Set(keyword, keyword == "sslmode" ? LibpqMode(key.value) : key.value);
    if (keyword == "connect_timeout") target.limit = ToConnectTimeout(key.value, source);
  }
  if (target.mode == ConnectionMode::ReadOnly) target.AskForReadOnly(known);
  target.Set("client_encoding", "UTF8");
  target.Set("fallback_application_name", "Tessel");
  return target;
}

/// Asked for with the connect, not by a statement behind it: RESET ALL and DISCARD ALL go back to
/// it. Other options stay, as given or as libpq would find them by itself.
void PostgresTarget::AskForReadOnly(const std::vector<PqKeyword>& defaults) {
  const PqKeyword* given = Find("options");
  const auto found = std::ranges::find(defaults, "options", &PqKeyword::name);
  std::string options = given != nullptr          ? given->value
                        : found != defaults.end() ? found->value
                                                  : std::string();
  if (!options.empty()) options += ' ';
  Set("options", options + "-c default_transaction_read_only=on");
}

void PostgresTarget::AddLogin(const Login& login) {
  if (Find("user") == nullptr && !login.user.empty()) Set("user", login.user);
  if (Find("password") == nullptr && !login.password.empty()) Set("password", login.password);
}

void PostgresTarget::Set(const std::string& name, const std::string& value) {
  PqKeyword* keyword = Find(name);
  if (keyword != nullptr) keyword->value = value;
  else keywords.push_back({name, value});
}

PqKeyword* PostgresTarget::Find(const std::string& name) {
  const auto found = std::ranges::find(keywords, name, &PqKeyword::name);
  return found == keywords.end() ? nullptr : &*found;
}

}  // namespace tessel
