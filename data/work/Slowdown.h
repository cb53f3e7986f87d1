#pragma once

namespace tessel {

/// How many times slower than otherwise this build runs: what waits for a database to react waits
/// as many times longer. More than 1 under a sanitizer.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int slowdown = 4;
#else
inline constexpr int slowdown = 1;
#endif

}  // namespace tessel
