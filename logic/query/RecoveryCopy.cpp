#include "logic/query/RecoveryCopy.h"

#include <sstream>

#include "contract/base/Error.h"

namespace tessel {

namespace {

constexpr int mostCopies = 99;
constexpr std::string_view title = "Tessel recovery 1";
constexpr const char* noStamp = "-";

}  // namespace

std::string PackUnsaved(const UnsavedText& unsaved) {
  const TextOrigin& origin = unsaved.origin;
  std::ostringstream bytes;
  bytes << title << ' ' << unsaved.text.size() << ' ' << unsaved.caret << ' ' << origin.path.size()
        << ' ' << static_cast<int>(origin.encoding) << ' '
        << (origin.stamp.empty() ? noStamp : origin.stamp) << '\n'
        << origin.path << '\n'
        << unsaved.text;
  return bytes.str();
}

std::optional<UnsavedText> UnpackUnsaved(std::string_view bytes) {
  const std::size_t lineEnd = bytes.find('\n');
  if (lineEnd == std::string_view::npos || !bytes.starts_with(title)) return std::nullopt;
  std::istringstream numbers(std::string(bytes.substr(title.size(), lineEnd - title.size())));
  const std::string_view rest = bytes.substr(lineEnd + 1);
  UnsavedText unsaved;
  std::size_t textLength = 0;
  std::size_t pathLength = 0;
  int encoding = 0;
  numbers >> textLength >> unsaved.caret >> pathLength >> encoding >> unsaved.origin.stamp;
  const bool known = encoding >= 0 && encoding <= static_cast<int>(TextEncoding::Windows1252);
  if (!numbers || !known || pathLength >= rest.size() || rest.size() - pathLength - 1 != textLength)
    return std::nullopt;
  if (unsaved.origin.stamp == noStamp) unsaved.origin.stamp.clear();
  unsaved.origin.path = rest.substr(0, pathLength);
  unsaved.origin.encoding = static_cast<TextEncoding>(encoding);
  unsaved.text = rest.substr(pathLength + 1);
  return unsaved;
}

std::string RecoveryCopy::PathOf(int number) const {
  return global_.BesideExecutable("Tessel.recovery-" + std::to_string(number));
}

void RecoveryCopy::FindLeft() {
  for (int number = 1; number <= mostCopies; ++number)
    if (auto left = TakeLeft(number)) left_.push_back(std::move(*left));
}

std::optional<RecoveryCopy::Left> RecoveryCopy::TakeLeft(int number) const {
  Files& files = global_.TheFiles();
  Left left{PathOf(number), nullptr, {}};
  if (!files.FileExists(left.path)) return std::nullopt;
  try {
    left.lock = files.Lock(left.path, 0);
    if (left.lock == nullptr) return std::nullopt;
    auto unsaved = UnpackUnsaved(files.ReadWhole(left.path));
    if (!unsaved) return std::nullopt;
    left.unsaved = std::move(*unsaved);
    return left;
  } catch (const Error&) {
    return std::nullopt;  // Nobody can take it back now; it stays for another time.
  }
}

void RecoveryCopy::RemoveFirstLeft() {
  global_.TheFiles().Remove(left_.front().path);
  left_.erase(left_.begin());
}

void RecoveryCopy::Keep(const UnsavedText& unsaved) {
  TakePlace();
  global_.TheFiles().ReplaceWhole(path_, PackUnsaved(unsaved), true);
  kept_ = true;
}

void RecoveryCopy::Discard() {
  if (!kept_) return;
  try {
    global_.TheFiles().Remove(path_);
    kept_ = false;
  } catch (const Error&) {
    // It will be offered at the next start, where the user can discard it.
  }
}

/// The first place where no copy lies and that no other program has taken.
void RecoveryCopy::TakePlace() {
  Files& files = global_.TheFiles();
  for (int number = 1; number <= mostCopies && lock_ == nullptr; ++number) {
    path_ = PathOf(number);
    if (files.FileExists(path_)) continue;
    lock_ = files.Lock(path_, 0);
    if (files.FileExists(path_)) lock_.reset();  // Another program left it there just now.
  }
  if (lock_ == nullptr) RaiseAppError(PathOf(mostCopies) + ": There are too many recovery copies");
}

}  // namespace tessel
