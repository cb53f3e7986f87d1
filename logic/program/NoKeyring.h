#pragma once

#include "contract/base/EventQueue.h"
#include "contract/desktop/Keyring.h"

namespace tessel {

/// Stands where the desktop has no keyring: whatever is asked fails with that reason.
class NoKeyring final : public Keyring {
 public:
  /// `queue` outlives it.
  explicit NoKeyring(EventQueue& queue) : queue_(queue) {}

  void Look(std::weak_ptr<const void> owner, Answered answered) override;
  void Read(std::string_view name, std::weak_ptr<const void> owner, Answered answered) override;
  void Keep(std::string_view name, std::string_view secret, std::weak_ptr<const void> owner,
            Answered answered) override;

 private:
  EventQueue& queue_;
};

}  // namespace tessel
