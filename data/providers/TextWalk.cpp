#include "data/providers/TextWalk.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "contract/text/Ascii.h"
#include "data/providers/text/CommandText.h"

namespace tessel {

namespace {

/// A call and a block of statements give any number of results, and an end without columns behind
/// them.
bool MayGiveMoreResults(std::string_view firstWord) {
  constexpr std::array<std::string_view, 8> words = {"call", "begin", "if",     "case",
                                                     "loop", "for",   "repeat", "while"};
  return std::ranges::any_of(
      words, [firstWord](std::string_view word) { return EqualNoCase(word, firstWord); });
}

}  // namespace

TextWalk::TextWalk(const std::string& sql, SqlDialect dialect, WorkContext& context)
    : sql_(sql), dialect_(dialect), statements_(SplitStatements(sql_, dialect)) {
  Tell(EarlierStatements::Stay, context);
}

void TextWalk::Next(EarlierStatements done, WorkContext& context) {
  ++current_;
  Tell(done, context);
}

/// What EXECUTE runs is not in the text, and may be a call: behind it the places are not known.
void TextWalk::LeaveRows(EarlierStatements done, WorkContext& context) {
  if (dialect_ == SqlDialect::MariaDB) {
    const std::string_view firstWord = FirstWord(Text());
    if (MayGiveMoreResults(firstWord)) return;
    if (EqualNoCase(firstWord, "execute")) statements_.clear();
  }
  Next(done, context);
}

void TextWalk::GoTo(std::size_t position, WorkContext& context) {
  const auto found = std::ranges::find_if(statements_, [position](const SqlStatement& statement) {
    return statement.begin <= position && position <= statement.end;
  });
  if (found == statements_.end()) return;
  current_ = static_cast<std::size_t>(found - statements_.begin());
  Tell(EarlierStatements::MayBeUndone, context);
}

std::string_view TextWalk::Text() const {
  if (current_ >= statements_.size()) return {};
  const SqlStatement& statement = statements_[current_];
  return std::string_view(sql_).substr(statement.begin, statement.end - statement.begin);
}

void TextWalk::Tell(EarlierStatements earlier, WorkContext& context) const {
  if (current_ >= statements_.size())
    return context.BeginStatement({}, EarlierStatements::NotKnown);
  const SqlStatement& statement = statements_[current_];
  const auto number = static_cast<std::int64_t>(current_) + 1;
  context.BeginStatement({number, statement.begin, statement.end}, earlier);
}

}  // namespace tessel
