#!/usr/bin/env python3
"""Checks of what is installed, and of the command that starts the program. Each is one test case.

    check.py --build FOLDER [--json FILE]

FOLDER is a build of the program; it is installed into a folder that goes with the tests. Homes are
such folders too. --json writes a report in the form of GoogleTest's.
"""
import argparse
import json
import os
import pathlib
import re
import shutil
import signal
import stat
import subprocess
import sys
import tempfile
import time
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[2]
ID = "org.tessel.Tessel"
# Stands for the program where only its start matters: says how it was started.
FAKE_PROGRAM = """#!/bin/sh
printf '%s\\n' "$0" "$@"
"""
NOBODY = 65534  # Root may write everywhere.
build_folder = None


def version():
    return re.search(r"project\(Tessel VERSION ([\d.]+)", (PROJECT / "CMakeLists.txt").read_text()).group(1)


def is_root():
    return os.geteuid() == 0


class Installed(unittest.TestCase):
    """The files that a package holds."""

    @classmethod
    def setUpClass(cls):
        cls.temporary = tempfile.TemporaryDirectory()
        cls.prefix = pathlib.Path(cls.temporary.name) / "usr"
        subprocess.run(["cmake", "--install", build_folder, "--prefix", cls.prefix], check=True,
                       stdout=subprocess.DEVNULL)

    @classmethod
    def tearDownClass(cls):
        cls.temporary.cleanup()

    def assert_tool_agrees(self, *command):
        if shutil.which(command[0]) is None:
            self.skipTest("there is no " + command[0])
        done = subprocess.run([str(word) for word in command], capture_output=True, text=True)
        self.assertEqual(done.returncode, 0, done.stdout + done.stderr)
        return done.stdout + done.stderr

    def test_EverythingIsThereAndNothingElse(self):
        files = {str(path.relative_to(self.prefix)) for path in self.prefix.rglob("*") if path.is_file()}
        icons = {name for name in files if name.startswith("share/icons/hicolor/")}
        self.assertEqual(files - icons, {
            "bin/tessel", "lib/tessel/Tessel", "share/man/man1/tessel.1",
            "share/applications/%s.desktop" % ID, "share/metainfo/%s.metainfo.xml" % ID})
        self.assertIn("share/icons/hicolor/scalable/apps/%s.svg" % ID, icons)

    def test_TheDesktopEntryIsValid(self):
        entry = self.prefix / "share/applications" / (ID + ".desktop")
        self.assertEqual(self.assert_tool_agrees("desktop-file-validate", entry), "")
        self.assertIn("\nIcon=%s\n" % ID, entry.read_text())
        self.assertIn("\nExec=tessel\n", entry.read_text())

    def test_TheDescriptionForSoftwareCentresIsValid(self):
        info = self.prefix / "share/metainfo" / (ID + ".metainfo.xml")
        self.assert_tool_agrees("appstreamcli", "validate", "--no-net", info)
        self.assertIn('<release version="%s"' % version(), info.read_text())

    def test_TheManualPageHasNoWarnings(self):
        page = self.prefix / "share/man/man1/tessel.1"
        self.assertEqual(self.assert_tool_agrees("man", "--warnings", "-E", "UTF-8", "-l", "-Tutf8", "-Z", page)
                         .count("warning"), 0)
        self.assertIn(version(), page.read_text())

    def test_TheProgramStartsThroughTheLinkAndEndsInOrder(self):
        with tempfile.TemporaryDirectory() as home:
            program = subprocess.Popen(
                [self.prefix / "bin/tessel", "-platform", "offscreen"],
                env={**os.environ, "HOME": home, "XDG_DATA_HOME": "", "LC_ALL": "C.UTF-8"})
            try:
                link = pathlib.Path(home, ".local/share/tessel/Tessel")
                command = pathlib.Path("/proc/%d/cmdline" % program.pid)
                for _ in range(100):
                    if command.read_bytes().startswith(bytes(link)):
                        break
                    time.sleep(0.1)
                self.assertEqual(command.read_bytes().split(b"\0")[0], bytes(link))
                time.sleep(1)
                self.assertIsNone(program.poll(), "it runs")
            finally:
                program.send_signal(signal.SIGTERM)
                self.assertEqual(program.wait(timeout=20), 0)


class Sources(unittest.TestCase):
    """What the package is made by."""

    def test_ThePackageHasTheProgramsVersion(self):
        changelog = (PROJECT / "packaging/debian/changelog").read_text()
        self.assertTrue(changelog.startswith("tessel (%s) " % version()), changelog[:40])

    def test_ThePackageIsBuiltWithTheLibrariesThatTheProgramIsBuiltWith(self):
        """Those of run.txt: a machine that has them builds the program."""
        control = (PROJECT / "packaging/debian/control").read_text()
        needed = set(re.findall(r"^[\w.+-]+-dev$", (PROJECT / "tools/packages/run.txt").read_text(), re.M))
        named = set(re.findall(r"[\w.+-]+-dev\b", control))
        self.assertEqual(needed - named, set())
        self.assertGreater(len(needed), 5)

    def test_TheDriversOfOdbcAreRecommended(self):
        control = (PROJECT / "packaging/debian/control").read_text()
        recommended = control.split("Recommends:")[1].split("Suggests:")[0]
        for driver in re.findall(r"^(?:odbc-\w+|tdsodbc)$", (PROJECT / "tools/packages/run.txt").read_text(), re.M):
            self.assertIn(driver, recommended)


class Starter(unittest.TestCase):
    """The command `tessel`, with a program that only says how it was started."""

    def setUp(self):
        temporary = tempfile.TemporaryDirectory()
        self.addCleanup(temporary.cleanup)
        self.top = pathlib.Path(temporary.name).resolve()
        self.home = self.top / "my home"
        self.home.mkdir()
        self.folder = self.home / ".local/share/tessel"
        self.program = self.install(self.top / "usr")
        self.command = self.top / "usr/bin/tessel"

    @staticmethod
    def install(prefix):
        program, starter = prefix / "lib/tessel/Tessel", prefix / "bin/tessel"
        for path, text in ((program, FAKE_PROGRAM),
                           (starter, (PROJECT / "packaging/tessel.in").read_text()
                            .replace("@PROJECT_VERSION@", "7.8.9"))):
            path.parent.mkdir(parents=True)
            path.write_text(text)
            path.chmod(0o755)
        return program

    def start(self, *arguments, command=None, status=0, cwd=None, user=None, **variables):
        """Runs it without a display; gives its lines, those of the error output behind the others."""
        environment = {"PATH": os.environ["PATH"], "HOME": str(self.home), **variables}
        done = subprocess.run([command or self.command, *arguments], env=environment, cwd=cwd, user=user,
                              capture_output=True, text=True, timeout=20)
        self.assertEqual(done.returncode, status, done.stdout + done.stderr)
        return done.stdout.splitlines() + done.stderr.splitlines()

    def assert_refused(self, words, *arguments, status=1, **options):
        said = "\n".join(self.start(*arguments, status=status, **options))
        self.assertIn(words, said)
        self.assertTrue(said.startswith("tessel: "), said)

    def test_EachUserHasAFolderWithALinkToTheProgram(self):
        self.assertEqual(self.start(), [str(self.folder / "Tessel")])
        self.assertEqual(os.readlink(self.folder / "Tessel"), str(self.program))
        self.assertEqual(stat.S_IMODE(self.folder.stat().st_mode), 0o700)
        self.assertEqual(sorted(path.name for path in self.folder.iterdir()), ["Tessel"])

    def test_TheFolderIsWhereTheDesktopWantsIt(self):
        data = self.top / "data"
        self.assertEqual(self.start(XDG_DATA_HOME=str(data)), [str(data / "tessel/Tessel")])
        self.assertEqual(self.start(XDG_DATA_HOME="not/a/full/path"), [str(self.folder / "Tessel")])

    def test_AnotherFolderIsAnotherSetOfFiles(self):
        other = self.top / "second; set"
        self.assertEqual(self.start("--folder", str(other)), [str(other / "Tessel")])
        self.assertEqual(self.start("--folder=" + str(other)), [str(other / "Tessel")])
        self.assertEqual(self.start("--folder", "third", cwd=self.top), [str(self.top / "third/Tessel")])
        self.assertEqual(self.start("--folder", "-odd", cwd=self.top), [str(self.top / "-odd/Tessel")])
        self.assertFalse(self.folder.exists())

    def test_OtherArgumentsArePassedOn(self):
        link = str(self.folder / "Tessel")
        self.assertEqual(self.start("-style", "a b", "--folder", "x"), [link, "-style", "a b", "--folder", "x"])
        self.assertEqual(self.start("--", "--help"), [link, "--help"])
        self.assertEqual(self.start("a 'file'.sql"), [link, "a 'file'.sql"])

    def test_ItTellsItsVersionAndItsOptionsWithoutMakingAnything(self):
        self.assertEqual(self.start("--version"), ["Tessel 7.8.9"])
        said = "\n".join(self.start("--help"))
        self.assertEqual(said, "\n".join(self.start("-h")))
        for word in ("--folder DIR", "--version", "--help"):
            self.assertIn(word, said)
        self.assertEqual(list(self.home.iterdir()), [])

    def test_AnOptionWithoutItsValueIsRefused(self):
        for arguments in (["--folder"], ["--folder", ""], ["--folder="]):
            self.assert_refused("needs the name of a folder", *arguments, status=2)

    def test_WhatLiesInTheFolderStaysAndTheLinkIsMended(self):
        self.folder.mkdir(parents=True)
        (self.folder / "Tessel.ini.xml").write_text("mine")
        (self.folder / "Tessel").symlink_to("/gone/with/the/old/package")
        self.assertEqual(self.start(), [str(self.folder / "Tessel")])
        self.assertEqual(os.readlink(self.folder / "Tessel"), str(self.program))
        self.assertEqual((self.folder / "Tessel.ini.xml").read_text(), "mine")
        self.assertEqual(len(list(self.folder.iterdir())), 2)

    def test_AProgramThatSomebodyPutThereIsNotReplaced(self):
        self.folder.mkdir(parents=True)
        (self.folder / "Tessel").write_text("mine")
        self.assert_refused("is in the way")
        self.assertEqual((self.folder / "Tessel").read_text(), "mine")

    def test_AStarterReachedByALinkFindsItsProgram(self):
        link = self.top / "tessel-link"
        link.symlink_to(self.command)
        self.start(command=link)
        self.assertEqual(os.readlink(self.folder / "Tessel"), str(self.program))

    def test_AMissingProgramIsSaid(self):
        self.start()
        self.program.unlink()
        self.assert_refused("is missing: install Tessel again")

    def test_AFileInThePlaceOfTheFolderIsSaid(self):
        (self.home / ".local").write_text("")
        self.assert_refused("cannot be made")

    def test_AFolderThatCannotBeWrittenToIsSaid(self):
        self.start()
        self.folder.chmod(0o555)
        self.addCleanup(self.folder.chmod, 0o700)
        for above in (self.top, self.home, *self.folder.parents[:2]):
            above.chmod(0o755)
        self.assert_refused("cannot be written to", user=NOBODY if is_root() else None)

    def test_AFullDiskIsSaidAndLeavesNothingBehind(self):
        """A disk without room for one more file, which only root can make."""
        disk = self.top / "disk"
        disk.mkdir()
        mounted = subprocess.run(["mount", "-t", "tmpfs", "-o", "nr_inodes=2,size=64k", "tmpfs", disk],
                                 capture_output=True) if is_root() else None
        if mounted is None or mounted.returncode != 0:
            self.skipTest("no disk can be mounted here")
        self.addCleanup(subprocess.run, ["umount", disk], check=True)
        (disk / "tessel").mkdir()
        self.assert_refused("The link to the program cannot be made", XDG_DATA_HOME=str(disk))
        self.assertEqual(list((disk / "tessel").iterdir()), [])

    def test_WithoutAHomeTheFolderIsAskedFor(self):
        self.assert_refused("--folder", HOME="")
        other = self.top / "other"
        self.assertEqual(self.start("--folder", str(other), HOME=""), [str(other / "Tessel")])


class Report(unittest.TestResult):
    """Prints each case, and keeps them in the form of GoogleTest's report."""

    def __init__(self):
        super().__init__()
        self.suites = {}

    def note(self, test, result, text=""):
        entry = {"name": test._testMethodName[len("test_"):],
                 "result": "SKIPPED" if result == "skip" else "COMPLETED"}
        if result == "FAIL":
            entry["failures"] = [{"failure": text}]
        self.suites.setdefault("Package" + type(test).__name__, []).append(entry)
        print("[ %-4s ] %s%s" % (result, entry["name"], "\n" + text if text else ""))

    def addSuccess(self, test):
        self.note(test, "ok")

    def addSkip(self, test, reason):
        self.note(test, "skip", "         " + reason)

    def addFailure(self, test, err):
        super().addFailure(test, err)
        self.note(test, "FAIL", self.failures[-1][1])

    def addError(self, test, err):
        super().addError(test, err)
        if hasattr(test, "_testMethodName"):
            self.note(test, "FAIL", self.errors[-1][1])
        else:
            print(self.errors[-1][1])


def main():
    global build_folder
    parser = argparse.ArgumentParser(description="Check what is installed.")
    parser.add_argument("--build", type=pathlib.Path, required=True, help="a build of the program")
    parser.add_argument("--json", type=pathlib.Path, help="write a report to this file")
    arguments = parser.parse_args()
    build_folder = arguments.build
    report = Report()
    unittest.defaultTestLoader.loadTestsFromModule(sys.modules[__name__]).run(report)
    if arguments.json:
        suites = [{"name": name, "testsuite": cases} for name, cases in report.suites.items()]
        arguments.json.write_text(json.dumps({"testsuites": suites}, indent=1))
    sys.exit(0 if report.wasSuccessful() else 1)


if __name__ == "__main__":
    main()
