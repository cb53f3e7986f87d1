#pragma once

#include <string>
#include <string_view>

namespace tessel::test {

/// Fills in the tags of any text and compares the outcome with that of a second scanner, which
/// takes the text step by step and replaces each tag in place. Empty when both agree and the text
/// came through unharmed; otherwise what is wrong.
[[nodiscard]] std::string ComplaintAboutTags(std::string_view text);

}  // namespace tessel::test
