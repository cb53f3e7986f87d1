#pragma once

#include <string>
#include <string_view>

#include "logic/connections/text/DataLinkText.h"

namespace tessel {

/// Whether the connection string says that its password is to be taken from elsewhere: "Password
/// From". A password that stands in the string all the same counts, and nothing is asked then.
[[nodiscard]] bool AsksForPassword(const DataLinkPairs& pairs);
/// Whether the keyring is the place to look first.
[[nodiscard]] bool AsksKeyring(const DataLinkPairs& pairs);
/// Takes the password out and adds the word for the keyring, or takes that word out.
void SetKeptInKeyring(DataLinkPairs& pairs, bool kept);

/// The name under which the keyring holds the password: the provider and every key that says whom
/// it is for, in one order and spelling. What does not matter to a password, such as the database
/// or the mode, is left out; a key that is not known is not. So a string that leads to another
/// server, or another user, never gets it.
[[nodiscard]] std::string KeyringName(const DataLinkPairs& pairs);
/// Whose password it is, for a person: "me at db.example.com (PostgreSQL)".
[[nodiscard]] std::string LoginText(const DataLinkPairs& pairs);

}  // namespace tessel
