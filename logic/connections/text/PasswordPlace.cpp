#include "logic/connections/text/PasswordPlace.h"

#include <algorithm>
#include <set>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"
#include "contract/text/ServerKeyNames.h"
#include "logic/connections/text/LinkFields.h"

namespace tessel {

namespace {

/// A password stays the same whatever these say.
constexpr std::string_view ofNoMatter[] = {"Database",
                                           "dbname",
                                           "Mode",
                                           "SSL Mode",
                                           "sslmode",
                                           "Connect Timeout",
                                           "Password",
                                           "Provider",
                                           "Application Name",
                                           "Passwd",
                                           "Persist Security Info",
                                           passwordFromKey};

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = AsciiLower(c);
  return lower;
}

bool Matters(std::string_view meaning) {
  return std::ranges::none_of(ofNoMatter,
                              [&](std::string_view one) { return EqualNoCase(one, meaning); });
}

std::string Bare(const std::string& text) { return BareValue(TrimSpaces(text), Wrapping::Braces); }

bool NamesPlace(const DataLinkPairs::value_type& pair) {
  return EqualNoCase(pair.first, passwordFromKey);
}

bool NamesKeyring(const DataLinkPairs::value_type& pair) {
  return NamesPlace(pair) && EqualNoCase(Bare(pair.second), passwordFromKeyring);
}

bool HoldsPassword(const DataLinkPairs& pairs) {
  return std::ranges::any_of(
      pairs, [](const auto& pair) { return ServerKeyName(pair.first) == "Password"; });
}

}  // namespace

bool AsksForPassword(const DataLinkPairs& pairs) {
  return std::ranges::any_of(pairs, NamesPlace) && !HoldsPassword(pairs);
}

bool AsksKeyring(const DataLinkPairs& pairs) {
  return std::ranges::any_of(pairs, NamesKeyring) && !HoldsPassword(pairs);
}

void SetKeptInKeyring(DataLinkPairs& pairs, bool kept) {
  std::erase_if(pairs, [&](const auto& pair) {
    return kept ? ServerKeyName(pair.first) == "Password" : NamesKeyring(pair);
  });
  if (kept) SetDataLinkPair(pairs, passwordFromKey, passwordFromKeyring);
}

std::string KeyringName(const DataLinkPairs& pairs) {
  std::set<std::string> seen;
  std::set<std::string> parts;
  for (const auto& [key, value] : pairs) {
    const std::string meaning = Lower(ServerKeyName(key));
    if (Matters(meaning) && seen.insert(meaning).second)
      parts.insert(meaning + "=" + BracedValue(Bare(value)));
  }
  const std::string provider = Lower(ProviderOf(pairs));
  std::string name = "provider=" + BracedValue(provider.empty() ? Lower(odbcName) : provider);
  for (const std::string& part : parts) name += ";" + part;
  return name;
}

std::string LoginText(const DataLinkPairs& pairs) {
  const std::string provider = ProviderOf(pairs);
  const LinkKind kind = LinkKindOf(provider);
  std::string place;
  for (const LinkField field : {LinkField::Server, LinkField::DataSourceName, LinkField::Driver})
    if (place.empty()) place = FieldOf(pairs, kind, field);
  std::string text = FieldOf(pairs, kind, LinkField::User);
  if (!place.empty()) text += (text.empty() ? "" : " at ") + place;
  const std::string by = provider.empty() ? std::string(odbcName) : provider;
  return text.empty() ? by : text + " (" + by + ")";
}

}  // namespace tessel
