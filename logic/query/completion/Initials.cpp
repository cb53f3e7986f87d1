#include "logic/query/completion/Initials.h"

#include <cstddef>

#include "logic/program/Characters.h"

namespace tessel {

namespace {

bool IsCapital(char c) { return c >= 'A' && c <= 'Z'; }
bool EndsWord(char c) { return c == '_' || static_cast<unsigned char>(c) <= ' '; }

/// Calls `take` with each initial of a name, until that returns false.
template <class Take>
void ForEachInitial(std::string_view name, bool keepCapitals, bool splitWords, Take take) {
  while (!name.empty()) {
    const Character character = TakeFirst(name);
    if (!take(UpperCharacter(character).Bytes())) return;
    char before = character.bytes.front();
    while (!name.empty() && !(splitWords && EndsWord(before)) &&
           !(keepCapitals && IsCapital(name.front()))) {
      before = name.front();
      name.remove_prefix(1);
    }
  }
}

}  // namespace

std::string MakeInitials(std::string_view name, bool keepCapitals, bool splitWords) {
  std::string initials;
  ForEachInitial(name, keepCapitals, splitWords, [&](std::string_view initial) {
    initials += initial;
    return true;
  });
  return initials;
}

bool InitialsBeginWith(std::string_view name, std::string_view wanted, bool keepCapitals,
                       bool splitWords) {
  std::size_t equal = 0;
  ForEachInitial(name, keepCapitals, splitWords, [&](std::string_view initial) {
    for (const char byte : initial) {
      if (equal == wanted.size() || byte != wanted[equal]) return false;
      ++equal;
    }
    return equal < wanted.size();
  });
  return equal == wanted.size();
}

}  // namespace tessel
