#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace tessel {

/// Makes the keys by which texts stand in the order of the desktop's language: bytes that compare
/// as the texts do. The language is that of the environment when this is made.
class TextKeys {
 public:
  TextKeys();

  /// Whether the environment names a language that has an order of its own.
  [[nodiscard]] bool HasLanguage() const { return locale_ != nullptr; }
  /// Appends the key of `text`; only with a language.
  void Append(std::string_view text, std::string& out);

 private:
  void AppendPiece(std::string& out);

  struct Free {
    void operator()(void* locale) const;
  };
  std::unique_ptr<void, Free> locale_;
  std::string piece_;  ///< What is made a key of: it has to end with NUL.
};

}  // namespace tessel
