#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "contract/text/TextRange.h"

namespace tessel {

// A tag is an opening, a marker, a type, a name, the marker again and the closing:
//   <%?Name%>   {*=Field*}
// The opening "<" closes with ">", "{" with "}"; the marker is "%" or "*".

/// The form of a tag, combined by OR.
namespace tagFlag {
inline constexpr int quoted = 1;  ///< Marker "*": the text as an SQL string literal.
inline constexpr int list = 2;    ///< Opening "{": in parentheses; of fields a list of values.
}  // namespace tagFlag

/// Where the text of a tag comes from.
namespace tagType {
inline constexpr char field = '=';
inline constexpr char named = '?';
inline constexpr char clipboard = '^';
}  // namespace tagType

/// Which types of tag a text held, combined by OR.
namespace tagSource {
inline constexpr int field = 1;
inline constexpr int named = 2;
inline constexpr int clipboard = 4;
}  // namespace tagSource

struct Tag {
  char type = tagType::named;
  std::string name;  ///< As written; may be empty.
  int flags = 0;     ///< Bits of tagFlag.

  [[nodiscard]] bool Quoted() const { return (flags & tagFlag::quoted) != 0; }
  [[nodiscard]] bool List() const { return (flags & tagFlag::list) != 0; }
};

/// Knows the texts that tags stand for.
class TagResolver {
 public:
  /// Lets pending events run before a tag is resolved; false once the user has cancelled.
  [[nodiscard]] virtual bool Yield() = 0;
  /// The text in the place of the tag, in the tag's form. Raises Error(application) when there is
  /// none.
  [[nodiscard]] virtual std::string Resolve(const Tag& tag) = 0;

 protected:
  ~TagResolver() = default;
};

/// A tag that was filled in: where it stood, and where the text in its place stands in the new one.
struct FilledTag {
  TextRange tag;
  TextRange filled;
};

/// A text whose tags have been filled in.
struct SubstitutedText {
  std::string text;
  int usedSources = 0;               ///< Bits of tagSource; 0 when it held no tag.
  std::vector<FilledTag> tags = {};  ///< In their order.
};

/// Where a range of the text that was filled in stands in the one with the tags. What took the
/// place of a tag is all of the tag.
[[nodiscard]] TextRange InTaggedText(const TextRange& filled, const std::vector<FilledTag>& tags);

/// Fills in the tags of `sql`, except those in string literals. A text that takes a tag's place is
/// not looked at again. Raises Error(application) at the first tag that is bad, cannot be resolved
/// or is cancelled.
[[nodiscard]] SubstitutedText SubstituteTags(std::string_view sql, TagResolver& resolver);

/// Whether something in the text opens like a tag; without it there is nothing to fill in.
[[nodiscard]] bool MayHoldTags(std::string_view sql);

/// The text of a tag; `flags` are bits of tagFlag, `type` is one of tagType.
[[nodiscard]] std::string MakeTagText(std::string_view name, int flags, char type);

}  // namespace tessel
