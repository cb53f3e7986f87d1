#!/usr/bin/env python3
"""Ends the program at random moments while SQL is being typed, and looks at the recovery copy.

    tests/recovery/kill_test.py [--program build/dev/Tessel] [--rounds 200] [--signal KILL]

Each round starts the program on a display of its own, types numbered words into the query window and
sends the signal at a random moment. The copy must then be whole, hold the beginning of what was typed
and lack nothing that was typed more than two seconds before. After SIGTERM and SIGHUP the program must
also have ended by itself, in order, in half of the rounds while a dialog is open, and the copy must
hold everything. The last line counts the rounds;
the exit status is 0 when none failed. Needs Xvfb, openbox and xdotool.
"""

import argparse
import os
import pathlib
import random
import shutil
import signal
import subprocess
import sys
import tempfile
import time

MOST_LOST_SECONDS = 2.0
SECONDS_TO_END = 8.0
SECONDS_TO_START = 20.0
TITLE = b"Tessel recovery 1 "


class Failure(Exception):
    """What a round found wrong."""


class Display:
    """A display with a window manager, and the keyboard in front of it."""

    def __init__(self):
        self.processes = []
        read_end, write_end = os.pipe()
        self._start(["Xvfb", "-displayfd", str(write_end), "-screen", "0", "1280x900x24", "-nolisten", "tcp"],
                    pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as number:
            os.environ["DISPLAY"] = ":" + number.readline().strip()
        os.environ.pop("WAYLAND_DISPLAY", None)
        os.environ["QT_QPA_PLATFORM"] = "xcb"
        self._start(["openbox", "--sm-disable"])
        self.wait_for("a window manager", ["getactivewindow"], may_fail=True)

    def _start(self, command, **options):
        self.processes.append(subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                                               **options))

    def close(self):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()

    @staticmethod
    def run(*arguments):
        result = subprocess.run(["xdotool", *arguments], capture_output=True, text=True, check=False)
        return result.stdout.strip() if result.returncode == 0 else ""

    def wait_for(self, what, arguments, may_fail=False, seconds=SECONDS_TO_START):
        """Repeats a question to xdotool until it has an answer."""
        end = time.monotonic() + (1.0 if may_fail else seconds)
        while time.monotonic() < end:
            answer = self.run(*arguments)
            if answer:
                return answer.split("\n")[0]
            time.sleep(0.05)
        if not may_fail:
            raise Failure("There is no " + what + ".")
        return ""


class Run:
    """One run of the program, with the words that were typed into it and when."""

    def __init__(self, display, program):
        self.display = display
        self.typed = []  # (time sent, text so far)
        self.process = subprocess.Popen([str(program)], stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        self._leave_connect_dialog()

    def _leave_connect_dialog(self):
        name = ["search", "--onlyvisible", "--name", "^Connect to Database$"]
        dialog = self.display.wait_for("connect dialog", name)
        end = time.monotonic() + SECONDS_TO_START
        while self.display.run(*name):
            if time.monotonic() > end:
                raise Failure("The connect dialog does not close.")
            self.display.run("windowactivate", dialog)
            self.display.run("key", "Escape")
            time.sleep(0.2)
        frame = self.display.wait_for("frame", ["search", "--onlyvisible", "--class", "Tessel"])
        self.display.run("windowactivate", frame)
        time.sleep(0.3)

    def type_until(self, end):
        """Types words until the moment `end`."""
        text = ""
        while time.monotonic() < end:
            word = f"w{len(self.typed):04d} "
            self.display.run("type", "--delay", "1", word)
            text += word
            self.typed.append((time.monotonic(), text))

    def open_dialog(self):
        """Leaves a modal dialog open."""
        self.display.run("key", "ctrl+s")
        self.display.wait_for("save dialog", ["search", "--onlyvisible", "--name", "^Save As$"])

    def text_sent_before(self, moment):
        sent = [text for when, text in self.typed if when <= moment]
        return sent[-1] if sent else ""

    def all_text(self):
        return self.typed[-1][1] if self.typed else ""

    def end(self, number):
        """Sends the signal; returns the moment."""
        moment = time.monotonic()
        self.process.send_signal(number)
        try:
            status = self.process.wait(SECONDS_TO_END)
        except subprocess.TimeoutExpired as waited:
            self.process.kill()
            self.process.wait()
            raise Failure("The program does not end.") from waited
        if number != signal.SIGKILL and status != 0:
            raise Failure(f"The program ended with status {status}.")
        return moment


def unpack(content):
    """The text of a copy; raises Failure unless it is whole."""
    head, _, rest = content.partition(b"\n")
    if not head.startswith(TITLE):
        raise Failure("The copy does not begin as one.")
    numbers = head[len(TITLE):].split()
    if len(numbers) != 5:
        raise Failure("The first line of the copy is not whole.")
    text_length, path_length = int(numbers[0]), int(numbers[2])
    if len(rest) != path_length + 1 + text_length:
        raise Failure(f"The copy has {len(rest)} bytes instead of {path_length + 1 + text_length}.")
    return rest[path_length + 1:].decode()


def kept_text(folder):
    copies = sorted(folder.glob("Tessel.recovery-*"))
    if len(copies) > 1:
        raise Failure("There are several copies of one run.")
    if not copies:
        return ""
    if copies[0].stat().st_mode & 0o077:
        raise Failure("The copy can be read by others.")
    return unpack(copies[0].read_bytes())


def play_round(display, folder, number, seconds, with_dialog):
    run = Run(display, folder / "Tessel")
    try:
        run.type_until(time.monotonic() + seconds)
        if number != signal.SIGKILL:
            time.sleep(0.3)  # What was sent has arrived.
            if with_dialog:
                run.open_dialog()
        moment = run.end(number)
    finally:
        if run.process.poll() is None:
            run.process.kill()
            run.process.wait()
    kept = kept_text(folder)
    if not run.all_text().startswith(kept):
        raise Failure(f"The copy is no beginning of what was typed: {kept[-40:]!r}")
    due = run.text_sent_before(moment - MOST_LOST_SECONDS) if number == signal.SIGKILL else run.all_text()
    if len(kept) < len(due):
        raise Failure(f"The copy has {len(kept)} characters, {len(due)} are due of {len(run.all_text())}.")
    return len(run.all_text()), len(kept)


def clear(folder):
    """Removes what a round left; the number of temporary files that a kill cut off."""
    cut_off = 0
    for file in folder.iterdir():
        if file.name == "Tessel":
            continue
        cut_off += file.name.endswith(".tmp")
        file.unlink()
    return cut_off


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--program", type=pathlib.Path, default=pathlib.Path("build/dev/bin/Tessel"))
    parser.add_argument("--rounds", type=int, default=200)
    parser.add_argument("--signal", choices=["KILL", "TERM", "HUP"], default="KILL")
    parser.add_argument("--seed", type=int, default=random.randrange(1 << 30))
    arguments = parser.parse_args()
    moments = random.Random(arguments.seed)
    signal.signal(signal.SIGHUP, signal.SIG_DFL)  # The program takes no hang-up that was ignored.
    print(f"seed {arguments.seed}", flush=True)
    failed = 0
    cut_off = 0
    display = Display()
    folder = pathlib.Path(tempfile.mkdtemp(prefix="tessel-recovery-"))
    try:
        shutil.copy(arguments.program, folder / "Tessel")
        for number in range(arguments.rounds):
            try:
                typed, kept = play_round(display, folder, getattr(signal, "SIG" + arguments.signal),
                                         moments.uniform(0.2, 5.0), moments.random() < 0.5)
                print(f"round {number + 1}: {typed} characters typed, {kept} kept", flush=True)
            except Failure as failure:
                failed += 1
                print(f"round {number + 1}: FAILED. {failure}", flush=True)
            cut_off += clear(folder)
    finally:
        display.close()
        shutil.rmtree(folder)
    print(f"{cut_off} temporary files were cut off beside the copies")
    print(f"{arguments.rounds - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
