#pragma once

namespace tessel::test {

/// A socket that listens on a port of the loopback interface, which is put into `port`. Throws
/// std::runtime_error.
[[nodiscard]] int ListenOnLoopback(int& port);

/// A socket that is connected to a port of the loopback interface; -1 when that is refused.
[[nodiscard]] int ConnectToLoopback(int port);

}  // namespace tessel::test
