#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace tessel {

/// What the keyring came to say.
struct KeyringAnswer {
  enum class Kind {
    Done,     ///< It did what was asked.
    Missing,  ///< It holds nothing under that name, which is no failure.
    Failed    ///< It is not there, stayed locked or refused: `reason` says so.
  };
  Kind kind = Kind::Done;
  std::string secret = {};  ///< What it holds under the name; only of a Read that is Done.
  std::string reason = {};  ///< A sentence for a person, without any secret; only of Failed.
};

/// The place where the user's desktop keeps secrets, locked while he is away. UI thread only.
///
/// Nothing here waits: each function returns at once, and its answer comes later from the event
/// loop, modal windows included, once. There is no limit of time, because the keyring may ask the
/// user to unlock it first. Whoever does not want to wait any longer lets go of `owner`: no answer
/// comes then, and what was asked may still be done. Several requests may be under way at once.
class Keyring {
 public:
  using Answered = std::function<void(const KeyringAnswer&)>;

  virtual ~Keyring() = default;

  /// Whether there is a keyring that could be asked: Done, or Failed with the reason. It is not
  /// unlocked for that.
  virtual void Look(std::weak_ptr<const void> owner, Answered answered) = 0;
  /// The secret that is kept under `name`.
  virtual void Read(std::string_view name, std::weak_ptr<const void> owner, Answered answered) = 0;
  /// Keeps `secret` under `name`, in place of what was there.
  virtual void Keep(std::string_view name, std::string_view secret, std::weak_ptr<const void> owner,
                    Answered answered) = 0;
};

}  // namespace tessel
