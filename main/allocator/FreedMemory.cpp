// Goes into every program that runs with mimalloc.

#include <mimalloc.h>

namespace tessel {

namespace {

/// Memory that was freed goes back to the system at once, not a little later: a driver that holds
/// a whole result before its rows are in the store takes its memory with it when it is done.
[[gnu::constructor]] void GiveFreedMemoryBackAtOnce() {
  mi_option_set(mi_option_decommit_delay, 0);
}

}  // namespace

}  // namespace tessel
