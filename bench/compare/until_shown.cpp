// Starts a program and tells how long it takes until its window is on the screen: mapped, and with
// something painted in it. Wants a display of its own without a window manager, all black.
// usage: compare_until_shown <program> [argument...]

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <sys/wait.h>
#include <unistd.h>

#include "bench/compare/Say.h"

namespace {

constexpr double limit = 30;
constexpr int leastSize = 300;  // Smaller ones are no main window.

struct CloseDisplay {
  void operator()(Display* display) const { XCloseDisplay(display); }
};

/// The first window of the size of a main window that was shown; none yet.
std::optional<Window> NextShown(Display* display) {
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    XWindowAttributes window;
    if (event.type != MapNotify) continue;
    if (XGetWindowAttributes(display, event.xmap.window, &window) == 0) continue;
    if (window.width >= leastSize && window.height >= leastSize) return event.xmap.window;
  }
  return std::nullopt;
}

bool IsPainted(Display* display, Window window) {
  constexpr int step = 16;
  XWindowAttributes size;
  if (XGetWindowAttributes(display, window, &size) == 0) return false;
  XImage* image = XGetImage(display, window, 0, 0, static_cast<unsigned>(size.width),
                            static_cast<unsigned>(size.height), AllPlanes, ZPixmap);
  if (image == nullptr) return false;
  bool painted = false;
  for (int y = step; y < image->height && !painted; y += step)
    for (int x = step; x < image->width && !painted; x += step)
      painted = (XGetPixel(image, x, y) & 0xFFFFFF) != 0;
  XDestroyImage(image);
  return painted;
}

pid_t Start(char** command) {
  const pid_t child = fork();
  if (child != 0) return child;
  execv(command[0], command);
  _exit(127);
}

/// Seconds until it is seen, or nothing when it takes too long.
std::optional<double> Watch(Display* display, const tessel::bench::Stopwatch& watch) {
  std::optional<Window> window;
  while (watch.Seconds() < limit) {
    if (!window) window = NextShown(display);
    if (window && IsPainted(display, *window)) return watch.Seconds();
    std::this_thread::sleep_for(std::chrono::microseconds(500));
  }
  return std::nullopt;
}

}  // namespace

int main(int argc, char* argv[]) {
  const std::unique_ptr<Display, CloseDisplay> display(XOpenDisplay(nullptr));
  if (argc < 2 || !display) {
    std::cerr << "usage: compare_until_shown <program> [argument...], on a display\n";
    return 2;
  }
  XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  XSelectInput(display.get(), DefaultRootWindow(display.get()), SubstructureNotifyMask);
  XSync(display.get(), False);
  const tessel::bench::Stopwatch watch;
  const pid_t child = Start(argv + 1);
  const std::optional<double> seconds = Watch(display.get(), watch);
  kill(child, SIGTERM);
  waitpid(child, nullptr, 0);
  if (!seconds) return 1;
  tessel::bench::Say("seconds", *seconds);
  return 0;
}
