#include "logic/program/NoKeyring.h"

#include <utility>

namespace tessel {

void NoKeyring::Look(std::weak_ptr<const void> owner, Answered answered) {
  queue_.Post(std::move(owner), [answered = std::move(answered)] {
    answered({KeyringAnswer::Kind::Failed, {}, "This desktop has no keyring."});
  });
}

void NoKeyring::Read(std::string_view /*name*/, std::weak_ptr<const void> owner,
                     Answered answered) {
  Look(std::move(owner), std::move(answered));
}

void NoKeyring::Keep(std::string_view /*name*/, std::string_view /*secret*/,
                     std::weak_ptr<const void> owner, Answered answered) {
  Look(std::move(owner), std::move(answered));
}

}  // namespace tessel
