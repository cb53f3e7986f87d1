#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

/// One `name=value` of a connection string.
struct ConnectionKey {
  std::string name;   ///< As written, without surrounding blanks.
  std::string value;  ///< Without braces and surrounding blanks.
  std::string text;   ///< The value as written, braces included: what is handed on unchanged.
};

/// The keys of a connection string, in the order written.
///
/// Keys are divided by ";", name and value by the first "=". A value may stand in {braces}, in
/// which ";" is plain and "}}" stands for "}". Names are compared without regard to ASCII case; of
/// several keys of one name the first counts, the others are dropped. A part without "=" is left
/// out.
class ConnectionKeys {
 public:
  [[nodiscard]] static ConnectionKeys Parse(std::string_view connectionString);

  /// The value of `name`, or null.
  [[nodiscard]] const std::string* Find(std::string_view name) const;
  /// The value of the first of `synonyms` that is there, or null.
  [[nodiscard]] const std::string* FindAny(std::initializer_list<std::string_view> synonyms) const;
  [[nodiscard]] std::string Get(std::string_view name, std::string_view fallback = {}) const;

  /// Replaces the value of `name`, or adds the key at the end; `text` gets braces where it needs
  /// them.
  void Set(std::string_view name, std::string_view value);
  void Remove(std::string_view name);

  [[nodiscard]] const std::vector<ConnectionKey>& Items() const { return items_; }
  /// The keys joined again, each `name=text`, with ";" between.
  [[nodiscard]] std::string Compose() const;

 private:
  [[nodiscard]] ConnectionKey* FindKey(std::string_view name);

  std::vector<ConnectionKey> items_;
};

}  // namespace tessel
