#include "logic/schema/SchemaOrigin.h"

#include <cstdint>
#include <initializer_list>

#include "contract/text/Ascii.h"
#include "contract/text/ConnectionParts.h"
#include "contract/text/Fnv.h"
#include "contract/text/NumberText.h"
#include "contract/text/TextCut.h"
#include "logic/program/Characters.h"

namespace tessel {

namespace {

constexpr std::string_view ending = ".schema.xml";
constexpr Wrapping wrapping = Wrapping::BracesAndQuotes;
constexpr std::size_t longestPart = 60;  ///< Bytes of the database's and of the server's name.

/// The values of those keys that a connection string has, in the order of `names`, with colons
/// between.
std::string ValuesOf(const std::vector<ConnectionPart>& parts,
                     std::initializer_list<std::string_view> names) {
  std::string values;
  for (const std::string_view name : names)
    for (const ConnectionPart& part : parts)
      if (EqualNoCase(part.name, name) && !part.Value().empty())
        values.append(values.empty() ? "" : ":").append(BareValue(part.Value(), wrapping));
  return values;
}

/// What the connection string calls the database, without folders.
std::string NamedDatabase(const std::vector<ConnectionPart>& parts) {
  for (const char* name : {"Initial Catalog", "Database", "DBQ", "Data Source", "DSN", "Server"}) {
    std::string value(TrimSpaces(ValuesOf(parts, {name})));
    KeepAfterLast(value, "\\");
    KeepAfterLast(value, "/");
    if (!value.empty()) return value;
  }
  return {};
}

/// The number of a text that hardly any other text has, as 16 hexadecimal digits.
std::string NumberOf(std::string_view text) {
  const std::uint64_t number = Fnv1a(text);
  std::string digits;
  for (int shift = 56; shift >= 0; shift -= 8)
    digits += ByteToHex(static_cast<unsigned char>(number >> static_cast<unsigned>(shift)));
  return digits;
}

bool IsUnsafe(char c) {
  constexpr std::string_view unsafe = R"(/\:*?"<>|)";
  return static_cast<unsigned char>(c) < ' ' || c == '\x7F' ||
         unsafe.find(c) != std::string_view::npos;
}

/// A part of a file's name: whole characters, none that means something in a path, no dot in front.
std::string SafePart(std::string_view text) {
  std::string part;
  while (!text.empty()) {
    const std::string_view character = FirstCharacter(text);
    if (part.size() + character.size() > longestPart) break;
    part += IsUnsafe(character.front()) ? "_" : character;
    text.remove_prefix(character.size());
  }
  if (part.starts_with('.')) part.front() = '_';
  return part;
}

}  // namespace

SchemaOrigin OriginOf(const Connection& connection) {
  const std::vector<ConnectionPart> parts =
      ConnectionParts(connection.ConnectionString(), wrapping);
  const std::string inUse = connection.DefaultDatabase();
  return {ValuesOf(parts, {"Provider", "Driver"}),
          ValuesOf(parts, {"Server", "Host", "Address", "Addr", "Network Address", "Socket",
                           "Data Source", "DBQ", "DSN", "Port"}),
          inUse.empty() ? NamedDatabase(parts) : inUse};
}

std::string SchemaFileNameOf(const SchemaOrigin& origin) {
  if (origin.database.empty()) return {};
  std::string name = SafePart(origin.database);
  if (origin.provider.empty() && origin.server.empty() && name == origin.database)
    return name + std::string(ending);
  std::string server = origin.server;
  KeepAfterLast(server, "\\");
  KeepAfterLast(server, "/");
  const std::string whole = origin.provider + "\n" + origin.server + "\n" + origin.database;
  if (!server.empty() && server != origin.database) name += "@" + SafePart(server);
  return name + "-" + NumberOf(whole) + std::string(ending);
}

std::string ProposedSchemaFileName(std::string_view database) {
  const std::string name = SafePart(database);
  return (name.empty() ? "database" : name) + std::string(ending);
}

}  // namespace tessel
