#pragma once

#include "contract/desktop/Keyring.h"

namespace tessel {

/// The keyring of the desktop's session: its Secret Service or its wallet, over D-Bus. Nothing is
/// asked of the bus before the first request.
class QtKeyring final : public Keyring {
 public:
  void Look(std::weak_ptr<const void> owner, Answered answered) override;
  void Read(std::string_view name, std::weak_ptr<const void> owner, Answered answered) override;
  void Keep(std::string_view name, std::string_view secret, std::weak_ptr<const void> owner,
            Answered answered) override;
};

}  // namespace tessel
