#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "contract/sql/SqlDialect.h"

namespace tessel {

/// What a piece of a text of SQL is.
enum class SqlTokenKind {
  End,     ///< Behind the last one; empty.
  Word,    ///< A keyword, a name without quotes, a number or a part of one.
  Quoted,  ///< A string or a quoted name, with its quotes; without an end, all to the text's end.
  Delimiter,  ///< What divides statements: ";" unless another is set.
  CodeMark,   ///< MariaDB's "/*!50100" or the "*/" that goes with it: the server runs what is
              ///< inside.
  Sign        ///< Any other byte, alone.
};

/// Bytes [begin, end) of the text.
struct SqlToken {
  SqlTokenKind kind = SqlTokenKind::End;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// What each of the 256 bytes may be.
using SqlByteKinds = std::array<std::uint8_t, 256>;

/// Walks over a text of SQL once, from its beginning to its end, and tells its pieces by the rules
/// of a dialect. Blanks and comments are passed over, as is a mark of the byte order in front. Any
/// bytes are walked over, NUL and text that is no UTF-8 too: a byte from 0x80 on belongs to a word.
/// It takes time by the length of the text, whatever is in it, and no memory. The text has to live
/// as long as this does. No locking: one thread at a time.
class SqlTokens {
 public:
  SqlTokens(std::string_view text, SqlDialect dialect);

  /// The next piece; at the end of the text End, as often as it is asked for.
  SqlToken Next();

  /// What stands there, as written.
  [[nodiscard]] std::string_view TextOf(const SqlToken& token) const {
    return text_.substr(token.begin, token.end - token.begin);
  }

  /// Whether the place reached is between the two marks of code.
  [[nodiscard]] bool InCode() const { return inCode_; }

  /// From here on this divides statements, and ";" is a sign; with an empty one nothing does. It is
  /// found outside of quotes and comments, and at the end of a word when it begins with a sign.
  void SplitAt(std::string_view delimiter) { delimiter_ = delimiter; }
  /// Goes on at that byte, which is not before the end of the last piece.
  void GoTo(std::size_t position) { at_ = position; }

 private:
  enum class Escapes {
    Doubled,    ///< The closing quote stands doubled for itself.
    Backslash,  ///< So it does, and behind a backslash every byte stands for itself.
    None        ///< The first closing quote ends it.
  };

  // Functions named Pass go behind what is no token, those named Take behind a token, whose kind
  // they give.
  /// Blanks and comments, as many as there are.
  void PassFiller();
  /// False when none begins here.
  bool PassComment();
  /// One that nests in some dialects; without an end it goes on to the end of the text.
  void PassBlockComment();
  [[nodiscard]] bool AtLineComment() const;
  /// Whether a comment begins whose content the server runs.
  [[nodiscard]] bool AtCode() const;
  [[nodiscard]] bool AtDelimiter() const;

  SqlTokenKind Take();
  SqlTokenKind TakeWord();
  /// A sign that may begin something longer.
  SqlTokenKind TakeOpening();
  SqlTokenKind TakeCodeMark();
  SqlTokenKind TakeQuoted(char close, Escapes escapes);
  /// PostgreSQL's E'...', at its quote.
  SqlTokenKind TakeEscapeString();
  SqlTokenKind TakeDollarQuoted(std::size_t tagSize);
  [[nodiscard]] std::size_t WordEnd() const;
  /// Of "$tag$", with both signs; 0 when none begins here.
  [[nodiscard]] std::size_t DollarTagSize() const;
  /// Goes to the next part of the string, if there is one.
  bool StringGoesOn();

  /// Whether the byte is of one of the kinds.
  [[nodiscard]] bool Is(std::size_t position, std::uint8_t kinds) const;
  [[nodiscard]] bool StartsWith(std::string_view piece) const {
    return text_.substr(at_, piece.size()) == piece;
  }
  /// The byte so far behind the place reached; NUL behind the end.
  [[nodiscard]] char Ahead(std::size_t distance) const {
    return text_.size() - at_ > distance ? text_[at_ + distance] : '\0';
  }
  /// Behind the first `end` from that byte on, or to the end of the text.
  void GoBehind(std::string_view end, std::size_t from);

  std::string_view text_;
  SqlDialect dialect_;
  const SqlByteKinds* kinds_;         ///< Those of the dialect.
  std::string_view delimiter_ = ";";  ///< Empty: nothing divides statements.
  std::size_t at_ = 0;                ///< How far it has come.
  bool inCode_ = false;               ///< Whether a "*/" is to come that is a mark.
};

}  // namespace tessel
