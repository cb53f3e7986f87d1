#!/usr/bin/python3
"""What a screen reader is told of the program, asked over the accessibility bus as one would ask.

    access_test.py --program build/dev/bin/Tessel [--json FILE] [NAME...]

The program runs on a display and a bus of its own and connects to the sample database. --json writes
a report in the form of GoogleTest's. Where display or bus cannot be had every case is skipped, with
the reason.
"""
import argparse
import json
import pathlib
import re
import shutil
import subprocess
import sys
import time
import unittest

import desk

ROOT = pathlib.Path(__file__).resolve().parents[2]
# What a user can act upon or read: each needs a name. Others only hold these.
NAMED = {"push button", "toggle button", "check box", "radio button", "text", "password text", "combo box", "list",
         "list item", "tree", "tree item", "table", "progress bar", "page tab", "document", "status bar", "dialog",
         "alert message", "frame", "menu item"}
ENOUGH = 40  # Objects of one list that are looked at.
program = None


class Session:
    """The program on a desk of its own."""

    def __init__(self, **environment):
        self.desk = desk.Desk(environment.pop("size", "1280x1024"))
        try:
            self._begin(environment)
        except BaseException:
            self.desk.end()
            raise

    def _begin(self, environment):
        self.desk.environment.update(environment)
        import atspi  # needs packages that may be missing
        self.folder = self.desk.folder
        shutil.copy(program, self.folder / "Tessel")
        subprocess.run([sys.executable, ROOT / "samples/make_shop.py", "--out", self.folder / "shop.db"], check=True,
                       stdout=subprocess.DEVNULL)
        self.bus = atspi.Bus()
        self.bus.listen()
        self.process = self.desk.start(self.folder / "Tessel", cwd=self.folder)
        self.program = desk.wait_until(lambda: next(iter(self.bus.programs()), None), "the program is on the bus")
        self.window("dialog", "Connect to Database")
        self.bus.settle()

    def end(self):
        self.desk.end()

    def windows(self):
        return [window for window in self.program.children() if "showing" in window.states]

    def window(self, role, name=None):
        """Waits until that window is there."""
        return desk.wait_until(
            lambda: next((window for window in self.windows()
                          if window.role == role and name in (None, window.name)), None),
            "the %s '%s' is there" % (role, name))

    def connect(self):
        dialog = self.window("dialog", "Connect to Database")
        dialog.find("text", "Connection String").write("Provider=SQLite;Data Source=%s" % (self.folder / "shop.db"))
        dialog.find("text", "Caption").write("Shop")
        dialog.find("check box", "Load Schema from Database").act()
        dialog.find("push button", "Connect").press()
        self.frame = self.window("frame", "Tessel")
        self.tree = self.frame.find("tree", "Schema browser")
        desk.wait_until(lambda: self.tree.count() == 1 and self.tree.child(0).count() > 0, "the schema is on show")
        self.sql = self.frame.find("text", "SQL text")
        self.bus.settle()

    def run(self, sql):
        """Runs it as the user does, and gives what was announced."""
        self.sql.act(self.sql.actions().index("SetFocus"))
        self.sql.write(sql)
        self.keys("ctrl+a")
        self.bus.events.clear()
        self.keys("F5")
        desk.wait_until(lambda: self.announced() or self.bus.settle(), "something is announced")
        self.bus.settle()
        return self.announced()

    def records(self):
        return self.frame.find("panel", "Shop").find("table", "Records")

    def announced(self):
        return [event.value for event in self.bus.events if event.signal == "Announcement"]

    def keys(self, *names):
        self.desk.keys(*names)
        self.bus.settle()

    def changes(self, kind):
        """The names of the objects of which a state was told, and what it is."""
        return [(event.source.name, event.first) for event in self.bus.events
                if event.signal == "StateChanged" and event.kind == kind]

    def focused(self):
        """The object that the last event of the focus named."""
        return [event.source for event in self.bus.events if event.kind == "focused" and event.first == 1][-1]


def nameless(window):
    """What a reader could not say, of all that is on show in the window."""
    return ["%s at %s" % (node.role, node.extents()) for node in window.walk(ENOUGH)
            if node.role in NAMED and "showing" in node.states and not node.name.strip()]


class AccessCase(unittest.TestCase):
    """A case on the session of its class."""
    session = None
    environment = {}
    connects = True

    @classmethod
    def setUpClass(cls):
        cls.session = Session(**cls.environment)
        try:
            if cls.connects:
                cls.session.connect()
        except BaseException:
            cls.session.end()
            raise

    @classmethod
    def tearDownClass(cls):
        cls.session.end()


class FirstDialogAccess(AccessCase):
    connects = False

    def setUp(self):
        self.dialog = self.session.window("dialog", "Connect to Database")

    def test_every_control_has_a_name(self):
        self.assertEqual(nameless(self.dialog), [])

    def test_a_row_of_the_list_tells_its_columns(self):
        self.assertEqual(self.dialog.find("list item").name, "(new)")
        self.assertEqual(self.dialog.find("list").name, "Saved connections")

    def test_the_builders_have_names_throughout(self):
        for caption in ("ODBC", "Access", "SQL Server", "Other", "OLE DB"):
            before = len(self.session.windows())
            self.dialog.find("push button", caption).press()
            desk.wait_until(lambda: len(self.session.windows()) > before, "the builder is there")
            builder = self.session.windows()[-1]
            self.assertEqual(nameless(builder), [], caption)
            self.session.keys("Escape")
            desk.wait_until(lambda: len(self.session.windows()) == before, "the builder has gone")

    def test_the_inner_edit_and_list_of_a_box_bear_its_name(self):
        boxes = [node for window in self.program_windows() for node in window.walk() if node.role == "combo box"]
        self.assertTrue(boxes)
        for box in boxes:
            for part in box.children():
                self.assertEqual(part.name, box.name)

    def program_windows(self):
        return self.session.program.children()


class WorkAccess(AccessCase):
    def setUp(self):
        self.addCleanup(self.close_what_is_open)

    def close_what_is_open(self):
        """What a case left open would fail the next ones."""
        for key in ("Escape", "Escape", "alt+F4"):
            if len(self.session.windows()) > 1:
                self.session.keys(key)

    def test_every_control_of_the_frame_has_a_name(self):
        self.session.run("SELECT Name FROM customers")
        self.assertEqual(nameless(self.session.frame), [])

    def test_the_status_line_is_announced_when_it_changes(self):
        self.assertEqual(self.session.run("SELECT Name FROM customers"), ["400 record(s)."])
        announced = self.session.run("SELECT x FROM nowhere")
        self.assertIn("no such table: nowhere", announced[0])
        status = self.session.frame.find("status bar", "Status")
        self.assertIn("no such table: nowhere", status.text())

    def test_a_cell_tells_column_row_and_value(self):
        self.session.run("SELECT 'Vienna' AS City, NULL AS a, 'NULL' AS b, '' AS c UNION ALL SELECT 'Rome', 1, 2, 3")
        table = self.session.records()
        self.assertEqual([table.cell(0, column).name for column in range(4)],
                         ["City, row 1, Vienna", "a, row 1, null value", "b, row 1, text NULL",
                          "c, row 1, empty text"])
        self.assertEqual(table.cell(1, 0).name, "City, row 2, Rome")
        self.assertEqual(table.cell(0, 0).role, "cell")

    def test_moving_in_the_grid_tells_each_cell(self):
        self.session.run("SELECT Name, City FROM customers")
        self.session.keys("F6")
        self.assertEqual(self.session.focused().name.split(",")[:2], ["Name", " row 1"])
        self.session.keys("Down", "Right")
        self.assertEqual(self.session.focused().name.split(",")[:2], ["City", " row 2"])
        self.assertIn("focused", self.session.focused().states)
        self.assertNotIn("focused", self.session.records().states)

    def test_a_million_rows_are_told_as_quickly_as_ten(self):
        self.session.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 1000000) "
                         "SELECT i, -i AS less FROM n")
        table = self.session.records()
        self.assertEqual(table.rows(), 1000000)
        begun = time.monotonic()
        children = table.children()
        self.assertLess(len(children), 500)
        self.assertEqual(table.cell(999999, 1).name, "less, row 1000000, -1000000")
        self.assertLess(time.monotonic() - begun, 1)
        self.session.keys("F6", "ctrl+End")
        self.assertEqual(self.session.focused().name, "less, row 1000000, -1000000")

    def test_the_editor_of_a_cell_lies_in_the_table_and_bears_its_column(self):
        self.session.run("SELECT 1")
        lock = self.session.frame.find("check box", "Lock")
        lock.act()
        self.session.run("SELECT CustomerID, Name FROM customers")
        self.session.keys("F6", "Right", "F2")
        editor = self.session.focused()
        self.assertEqual((editor.role, editor.name), ("text", "Name, row 1"))
        self.assertEqual(editor.parent, self.session.records())
        self.assertIn(editor, self.session.records().children())
        self.session.keys("Escape")
        self.assertEqual(self.session.focused().role, "cell")
        lock.act()

    def test_only_what_has_the_focus_tells_of_it(self):
        self.session.run("SELECT Name FROM customers")
        told = {event.source for event in self.session.bus.events if event.kind == "focused" and event.first == 1}
        self.assertEqual({source.name for source in told} - {"SQL text", "Cancel"}, set())

    def test_a_tree_tells_levels_and_what_opens_or_is_checked(self):
        database = self.session.tree.child(0)
        table = database.child(0)
        self.assertEqual((database.description, table.description), ("level 1", "level 2, not checked"))
        self.assertEqual(table.parent, database)
        self.assertIn("expandable", table.states)
        table.act(table.actions().index("SetFocus"))
        self.session.bus.settle()
        self.assertEqual(self.session.focused(), table)
        self.session.bus.events.clear()
        self.session.keys("Right")
        self.assertIn((table.name, 1), self.session.changes("expanded"))
        self.assertIn("expanded", table.states)
        field = table.child(0)
        self.assertEqual(field.description, "level 3, not checked")
        self.session.keys("Down", "space")
        self.assertIn((field.name, 1), self.session.changes("checked"))
        self.assertIn("checked", field.states)
        self.assertEqual(self.session.focused(), field)
        self.session.keys("Up", "Left")
        self.assertIn((table.name, 0), self.session.changes("expanded"))

    def test_the_words_that_completion_offers_are_told(self):
        self.session.sql.act(self.session.sql.actions().index("SetFocus"))
        self.session.sql.write("SELECT * FROM ")
        self.session.keys("ctrl+End", "ctrl+t")
        first = self.session.focused()
        self.assertEqual(first.role, "list item")
        self.assertTrue(first.name)
        self.session.keys("Down")
        self.assertEqual(self.session.focused().role, "list item")
        self.assertNotEqual(self.session.focused(), first)
        self.session.keys("Escape")
        self.assertEqual(self.session.focused().name, "SQL text")

    def test_a_message_is_an_alert_with_its_text(self):
        self.session.sql.act(self.session.sql.actions().index("SetFocus"))
        self.session.sql.write("SELECT 1")
        self.session.keys("Home")
        self.session.keys("F5")
        alert = self.session.window("alert message")
        self.assertIn("Please select the SQL to be executed.", [node.name for node in alert.walk()])
        self.assertEqual(self.session.focused().role, "push button")
        self.assertEqual(nameless(alert), [])
        self.session.keys("Escape")

    def test_the_help_window_holds_a_document(self):
        self.session.keys("F1")
        window = self.session.window("frame", "Tessel Help")
        page = window.find("document", "Help page")
        self.assertGreater(len(page.text()), 100)
        self.assertEqual(nameless(window), [])
        self.session.keys("alt+F4")

    def test_a_label_tells_its_text(self):
        about = next(node for node in self.session.frame.walk() if node.name == "About Tessel")
        about.press()
        window = self.session.window("dialog")
        said = [node.name for node in window.walk() if node.role == "label"]
        self.assertTrue(any("Licence" in text and "General Public License" in text for text in said), said)
        self.assertEqual(nameless(window), [])
        self.session.keys("Escape")

    def test_a_long_run_tells_its_time_and_how_to_end_it(self):
        self.session.sql.act(self.session.sql.actions().index("SetFocus"))
        self.session.sql.write("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n) "
                               "SELECT count(*) FROM n")
        self.session.keys("ctrl+a", "F5")
        window = self.session.window("dialog", "Progress")
        self.assertEqual(nameless(window), [])
        told = [node.name for node in window.walk() if node.role == "label"]
        self.assertTrue(any("Elapsed time: 00:00:" in text for text in told), told)
        window.find("push button", "Cancel").press()
        desk.wait_until(lambda: len(self.session.windows()) == 1, "the run has ended")
        self.session.bus.settle()
        self.assertEqual(self.session.announced()[-1:], ["Execution cancelled."])

    def test_a_conversion_tells_its_progress(self):
        self.session.run("WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 300000) "
                         "SELECT i, i AS b, i AS c, i AS d, i AS e, i AS f, i AS g, i AS h FROM n")
        self.session.bus.events.clear()
        next(node for node in self.session.frame.walk() if node.name == "--> CSV").press()
        desk.wait_until(self.values_told, "the bar moves")
        desk.wait_until(lambda: self.session.bus.settle() or not self.progress_shows(),
                        "the rows are converted")
        told = self.values_told()
        self.assertEqual({bar.name for bar in told}, {"Progress"})
        self.assertLessEqual(len(told), 110)  # whole percents, not each step
        low, now, high = told[0].value()
        self.assertTrue(low < now <= high, (low, now, high))

    def progress_shows(self):
        return any(window.name == "Progress" for window in self.session.windows())

    def values_told(self):
        self.session.bus.settle(0.1)
        return [event.source for event in self.session.bus.events if event.kind == "accessible-value"]

    def test_the_list_of_statements_is_a_table_with_a_name(self):
        self.session.run("SELECT 1; SELECT 2")
        self.session.frame.find("panel", "Shop").find("push button", "Statements").press()
        window = self.session.frame.find("panel", "Statements of Shop")
        table = window.find("table", "Rows")
        self.assertEqual([table.cell(1, column).name for column in (0, 2, 3)],
                         ["Statement, row 2, 2", "SQL, row 2, SELECT 2", "State, row 2, done"])
        self.assertIn("2 statements", window.find("status bar").name)
        self.assertEqual(nameless(window), [])
        self.session.keys("ctrl+F4")


class ResultsAccess(AccessCase):
    """The windows, lines and panes in which results are looked at and taken elsewhere."""

    def setUp(self):
        self.session.run("SELECT CustomerID, Name, City FROM customers")
        self.records = self.session.frame.find("panel", "Shop")
        self.session.keys("F6")

    def opened(self, key, title):
        self.session.keys(key)
        self.addCleanup(self.session.keys, "Escape")
        return self.session.window("dialog", title)

    def test_their_dialogs_have_names_throughout(self):
        for key, title in (("ctrl+shift+E", "Export to File"), ("ctrl+shift+I", "Import Records"),
                           ("ctrl+shift+G", "Shop - Chart"), ("ctrl+shift+D", "Shop - Diagram")):
            with self.subTest(title):
                self.assertEqual(nameless(self.opened(key, title)), [])
                self.session.keys("Escape")

    def test_a_plan_tells_its_steps(self):
        self.session.keys("F6", "ctrl+a", "F6")
        plan = self.opened("ctrl+shift+P", "Shop - Plan")
        self.assertEqual(nameless(plan), [])
        steps = plan.find("list", "Steps of the plan")
        desk.wait_until(steps.count, "the plan is on show")
        told = [step.name for step in steps.children()]
        self.session.keys("Escape")
        self.assertIn("SCAN customers", told[-1])

    def test_a_chart_and_a_diagram_are_pictures_with_a_name(self):
        for key, title, name in (("ctrl+shift+G", "Shop - Chart", "Chart"), ("ctrl+shift+D", "Shop - Diagram", "Diagram")):
            with self.subTest(title):
                window = self.opened(key, title)
                self.assertIn(name, [node.name for node in window.walk(ENOUGH) if node.role in ("image", "graphic")])
                self.session.keys("Escape")

    def test_the_find_and_filter_lines_have_names_and_tell_their_count(self):
        self.session.keys("ctrl+f")
        self.assertEqual(self.session.focused().name, "Find in rows")
        self.session.keys("ctrl+shift+F")
        self.assertEqual(nameless(self.records), [])
        self.session.bus.events.clear()
        self.session.desk.keys("V", "i", "e")
        desk.wait_until(lambda: self.session.bus.settle() or self.session.announced(), "something is announced")
        self.assertRegex(" ".join(self.session.announced()), r"\d+ of 400")
        self.session.keys("Escape")

    def test_the_record_as_a_form_is_a_table_of_fields(self):
        self.session.keys("ctrl+shift+R")
        fields = self.records.find("table", "Fields of the record")
        self.assertEqual(fields.rows(), 3)
        self.assertEqual(fields.cell(1, 0).name, "Field, row 2, Name")
        self.assertEqual(self.session.focused().name.split(",")[:2], ["Value", " row 1"])
        self.session.keys("Tab")
        self.assertEqual(self.session.focused().name.split(",")[:2], ["Value", " row 2"])
        self.assertEqual(nameless(self.records), [])
        self.session.keys("ctrl+shift+R")

    def test_the_pane_of_a_value_tells_what_it_holds(self):
        self.session.keys("Right", "ctrl+shift+V")
        self.assertEqual(nameless(self.records), [])
        told = [node.name for node in self.records.walk(ENOUGH) if node.role == "status bar" and "showing" in node.states]
        self.assertTrue(any(name.startswith("Name: Text, ") for name in told), told)
        self.session.keys("ctrl+shift+V")


class ScaledAccess(AccessCase):
    """With everything drawn twice as large, places are told in the pixels of the screen."""
    environment = {"QT_SCALE_FACTOR": "2", "size": "2600x2000"}
    connects = False

    def test_places_are_those_on_the_screen(self):
        dialog = self.session.window("dialog", "Connect to Database")
        told = subprocess.run(["xwininfo", "-name", "Connect to Database"], env=self.session.desk.environment,
                              capture_output=True, text=True, check=True).stdout
        on_screen = tuple(int(re.search(what + r":\s+(\d+)", told).group(1))
                          for what in ("upper-left X", "upper-left Y", "Width", "Height"))
        self.assertEqual(dialog.extents(), on_screen)
        for node in dialog.walk():
            x, y, width, height = node.extents()
            if "showing" not in node.states or not width:
                continue
            self.assertGreaterEqual(x, on_screen[0], node)
            self.assertLessEqual(x + width, on_screen[0] + on_screen[2] + 1, node)
            self.assertLessEqual(y + height, on_screen[1] + on_screen[3] + 1, node)
        button = dialog.find("push button", "Connect")
        self.assertGreater(button.extents()[2], 120)


class Report(unittest.TextTestResult):
    """Keeps every case for the report."""

    def __init__(self, *arguments):
        super().__init__(*arguments)
        self.cases = []

    def _keep(self, test, result, text=""):
        suite, name = type(test).__name__, test.id().rsplit(".", 1)[1]
        self.cases.append((suite, name, result, text))

    def addSuccess(self, test):
        super().addSuccess(test)
        self._keep(test, "passed")

    def addFailure(self, test, error):
        super().addFailure(test, error)
        self._keep(test, "failed", str(error[1]))

    def addError(self, test, error):
        super().addError(test, error)
        self._keep(test, "failed", repr(error[1]))

    def addSkip(self, test, reason):
        super().addSkip(test, reason)
        self._keep(test, "skipped", reason)

    def as_json(self):
        def entry(name, result, text):
            found = {"name": name, "result": "SKIPPED" if result == "skipped" else "COMPLETED"}
            if result == "failed":
                found["failures"] = [{"failure": text}]
            return found
        suites = {}
        for suite, name, result, text in self.cases:
            suites.setdefault(suite, []).append(entry(name, result, text))
        return {"testsuites": [{"name": suite, "testsuite": cases} for suite, cases in suites.items()]}


def reason_to_skip():
    """Why no case can run here; None when they can."""
    try:
        import gi.repository.Gio  # noqa: F401
        desk.Desk().end()
    except (ImportError, desk.Missing) as reason:
        return str(reason)
    return None


def main():
    global program
    parser = argparse.ArgumentParser(description="Ask the program what a screen reader asks.")
    parser.add_argument("--program", type=pathlib.Path, default=ROOT / "build/dev/bin/Tessel")
    parser.add_argument("--json", type=pathlib.Path, help="write a report to this file")
    parser.add_argument("names", nargs="*", help="parts of the names of the cases to run")
    arguments = parser.parse_args()
    program = arguments.program.resolve()

    loader = unittest.TestLoader()
    loader.testNamePatterns = ["*%s*" % name for name in arguments.names] or None
    suite = loader.loadTestsFromModule(sys.modules["__main__"])
    reason = reason_to_skip()
    if reason:
        for kind in (FirstDialogAccess, WorkAccess, ScaledAccess):
            unittest.skip(reason)(kind)
    result = unittest.TextTestRunner(verbosity=2, resultclass=Report).run(suite)
    if arguments.json:
        arguments.json.write_text(json.dumps(result.as_json()))
    sys.exit(0 if result.wasSuccessful() else 1)


if __name__ == "__main__":
    main()
