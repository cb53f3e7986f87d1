#include "data/providers/Provider.h"

#include <algorithm>
#include <utility>

#include "contract/text/Ascii.h"
#include "contract/text/ServerKeyNames.h"

namespace tessel {

namespace {

bool Serves(std::string_view pattern, std::string_view name) {
  if (!pattern.ends_with('*')) return EqualNoCase(pattern, name);
  return StartsWithNoCase(name, pattern.substr(0, pattern.size() - 1));
}

}  // namespace

StatementResult ProviderSession::RunStatement(const RowStatement& /*statement*/,
                                              WorkContext& /*context*/) {
  throw Error(errorNumber::notSupported, "Tessel", "This provider cannot change records.");
}

std::unique_ptr<RowLoader> ProviderSession::BeginLoad(const LoadRequest& request,
                                                      WorkContext& /*context*/) {
  return std::make_unique<StatementLoader>(
      request, *Writing(), [this](const RowStatement& statement, WorkContext& context) {
        (void)RunStatement(statement, context);
      });
}

void ProviderSession::RunControl(std::string_view /*sql*/, const WorkContext* /*context*/) {
  throw Error(errorNumber::notSupported, "Tessel", "This provider cannot change records.");
}

void ProviderRegistry::Add(std::unique_ptr<Provider> provider, bool isDefault) {
  if (isDefault) default_ = provider.get();
  providers_.push_back(std::move(provider));
}

const Provider* ProviderRegistry::Find(std::string_view name) const {
  for (const auto& provider : providers_) {
    const std::vector<std::string> names = provider->Names();
    if (std::ranges::any_of(names, [&](const auto& own) { return Serves(own, name); }))
      return provider.get();
  }
  return nullptr;
}

std::unique_ptr<ProviderSession>
ProviderRegistry::CreateSession(const std::string& connectionString) const {
  ConnectionKeys keys = ConnectionKeys::Parse(connectionString);
  keys.Remove(passwordFromKey);
  const std::string name = keys.Get("Provider");
  const Provider* provider = name.empty() ? default_ : Find(name);
  if (provider != nullptr) return provider->CreateSession(keys);

  std::string text = name.empty() ? "The connection string names no provider."
                                  : "There is no provider '" + name + "'.";
  text += " The providers there are: ";
  for (const std::string& known : Names()) text += known + ", ";
  text.replace(text.size() - 2, 2, ".");
  throw Error(errorNumber::providerNotFound, "Tessel", text);
}

std::vector<std::string> ProviderRegistry::Names() const {
  std::vector<std::string> names;
  for (const auto& provider : providers_)
    for (std::string& name : provider->Names()) names.push_back(std::move(name));
  std::ranges::sort(names, {}, [](const std::string& name) { return AsciiUpper(name); });
  return names;
}

}  // namespace tessel
