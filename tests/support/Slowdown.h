#pragma once

namespace tessel::test {

/// How many times slower than otherwise this build runs: what a test waits for may take as many
/// times longer, and so may what its connections wait for. More than 1 under a sanitizer.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr int slowdown = 4;
#else
inline constexpr int slowdown = 1;
#endif

}  // namespace tessel::test
