"""A private desktop for one program: a display with a window manager, a session bus, an accessibility bus."""
import os
import pathlib
import shutil
import subprocess
import tempfile
import time

NEEDED = ("Xvfb", "openbox", "dbus-daemon", "xdotool", "xwininfo")


class Missing(Exception):
    """The desktop cannot be had here; the text says why."""


class Desk:
    def __init__(self, size="1280x1024"):
        absent = [name for name in NEEDED if shutil.which(name) is None]
        if absent:
            raise Missing("not installed: " + ", ".join(absent))
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tessel-access-"))
        self.started = []
        self.log = open(self.folder / "log", "w")
        self.environment = dict(os.environ, XDG_RUNTIME_DIR=str(self.folder), HOME=str(self.folder),
                                LC_ALL="C.UTF-8", QT_QPA_PLATFORM="xcb", QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1",
                                NO_AT_BRIDGE="1")
        try:
            self._start_display(size)
            self._start_bus()
        except Missing:
            self.end()
            raise

    def start(self, *command, **options):
        process = subprocess.Popen(command, env=self.environment, stdout=options.pop("stdout", self.log),
                                   stderr=self.log, **options)
        self.started.append(process)
        return process

    def _first_line(self, descriptor, what):
        with os.fdopen(descriptor) as pipe:
            line = pipe.readline().strip()
        if not line:
            raise Missing(what + " did not start")
        return line

    def _start_display(self, size):
        read, write = os.pipe()
        self.start("Xvfb", "-displayfd", str(write), "-screen", "0", size + "x24", "-nolisten", "tcp", pass_fds=(write,))
        os.close(write)
        self.environment["DISPLAY"] = ":" + self._first_line(read, "Xvfb")
        self.environment.pop("WAYLAND_DISPLAY", None)
        ready = self.folder / "ready"
        self.start("openbox", "--sm-disable", "--startup", "touch '%s'" % ready)
        wait_until(ready.exists, "openbox is ready")

    def _start_bus(self):
        read, write = os.pipe()
        self.start("dbus-daemon", "--session", "--nofork", "--print-address=%d" % write, pass_fds=(write,))
        os.close(write)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._first_line(read, "dbus-daemon")
        os.environ.update(DBUS_SESSION_BUS_ADDRESS=self.environment["DBUS_SESSION_BUS_ADDRESS"],
                          XDG_RUNTIME_DIR=str(self.folder), DISPLAY=self.environment["DISPLAY"])

    def keys(self, *names):
        subprocess.run(("xdotool", "key", "--clearmodifiers") + names, env=self.environment, check=True)

    def type(self, text):
        subprocess.run(("xdotool", "type", "--delay", "4", text), env=self.environment, check=True)

    def end(self):
        for process in reversed(self.started):
            process.terminate()
        for process in reversed(self.started):
            try:
                process.wait(5)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
        self.log.close()
        shutil.rmtree(self.folder, ignore_errors=True)


def wait_until(condition, what, seconds=15):
    end = time.monotonic() + seconds
    while True:
        found = condition()
        if found:
            return found
        if time.monotonic() > end:
            raise AssertionError("waited in vain until " + what)
        time.sleep(0.05)
