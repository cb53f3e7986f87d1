#!/usr/bin/env python3
"""Runs the measurements of the programs in this folder, ours and the raw one in turns, and prints
one line a row: medians, ratio, aim, and "ok" or "short". To be started by bench/compare.sh."""
import argparse
import contextlib
import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

MEGABYTE = 1e6
UNITS = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3, "s": 1}
QUERY = "select * from orders"


class Failed(Exception):
    """A measurement that gave no figures."""


def figures(command, environment=None):
    """What a program told, by name."""
    done = subprocess.run(command, capture_output=True, text=True, check=False, timeout=900,
                          env={**os.environ, **(environment or {})})
    if done.returncode != 0:
        raise Failed("%s: %s" % (" ".join(command[:2]), done.stderr.strip() or done.returncode))
    told = {}
    for line in done.stdout.splitlines():
        name, _, value = line.partition(" ")
        told[name] = value if name == "file" else float(value)
    return told


class Setting:
    """The programs, servers and tables that the rows measure with, each made at its first use."""

    def __init__(self, arguments, stack):
        self.arguments = arguments
        self.programs = arguments.programs.resolve()
        self.stack = stack
        self.made = {}

    def program(self, name, *arguments, environment=None):
        return figures([str(self.programs / name), *map(str, arguments)], environment)

    def data(self, *arguments):
        return self.program("compare_data", *arguments)

    def raw(self, *arguments):
        return self.program("compare_raw", *arguments)

    def once(self, name, make):
        if name not in self.made:
            self.made[name] = make()
        return self.made[name]

    # --- databases --------------------------------------------------------------------------------

    def servers(self):
        """Host, port, user, password and database by the server's name."""
        def start():
            process = self.stack.enter_context(subprocess.Popen(
                [str(self.programs / "compare_servers")], stdin=subprocess.PIPE,
                stdout=subprocess.PIPE, text=True))
            self.stack.callback(process.stdin.close)
            told = {}
            while "folder" not in told:
                line = process.stdout.readline()
                if not line:
                    raise Failed("The servers do not start.")
                name, *rest = line.split()
                told[name] = rest
            # The drivers of ODBC as the tests define them.
            os.environ["ODBCSYSINI"] = told["folder"][0]
            return told
        return self.once("servers", start)

    def native(self, server):
        host, port, user, password, database = self.servers()[server]
        provider = {"postgresql": "PostgreSQL", "mariadb": "MariaDB"}[server]
        return ("Provider=%s;Server=%s;Port=%s;Database=%s;User ID=%s;Password=%s"
                % (provider, host, port, database, user, password))

    def odbc(self, server):
        host, port, user, password, database = self.servers()[server]
        driver = {"postgresql": "PostgreSQL Unicode", "mariadb": "MariaDB Unicode"}[server]
        return ("Driver={%s};Server=%s;Port=%s;Database=%s;UID=%s;PWD=%s"
                % (driver, host, port, database, user, password))

    def raw_odbc(self, server):
        """With the options that the provider adds by itself."""
        options = {"postgresql": "Protocol=7.4-0;BoolsAsChar=0",
                   "mariadb": "OPTION=67108866;CONN_TIMEOUT=15;CHARSET=utf8mb4"}[server]
        return self.odbc(server) + ";" + options

    def orders(self, server):
        """The native connection string of a server that has the table."""
        def make():
            self.data("make-" + server, self.native(server), self.arguments.rows)
            return self.native(server)
        return self.once("orders " + server, make)

    def file(self, rows):
        return self.once("file %d" % rows, lambda: self.data("make-file", rows)["file"])

    def sqlite(self, rows=None):
        return "Provider=SQLite;Data Source=" + self.file(rows or self.arguments.rows)

    def orders_csv(self):
        """The table as CSV with a header, written by SQLite's shell."""
        path = self.file(self.arguments.rows) + ".csv"
        if not os.path.exists(path):
            with open(path + ".part", "w", encoding="utf-8") as out:
                subprocess.run(["sqlite3", "-csv", "-header", self.file(self.arguments.rows), QUERY],
                               stdout=out, check=True)
            os.rename(path + ".part", path)
        return path

    def importers(self, text):
        """Where rows are imported to, and what else brings them there."""
        base = self.file(self.arguments.rows) + ".imported"
        host, port, user, password, database = self.servers()["postgresql"]
        psql = ["psql", "-X", "-q", "-h", host, "-p", port, "-U", user, "-d", database, "-c",
                "\\copy imported from '%s' with (format csv, header)" % text]
        shell = ["sqlite3", base]
        commands = ".mode csv\n.import --skip 1 '%s' imported\n" % text
        return {"SQLite": ("Provider=SQLite;Mode=ReadWriteCreate;Data Source=" + base,
                           lambda: timed(shell, text=commands)),
                "PostgreSQL": (self.native("postgresql"),
                               lambda: timed(psql, {"PGPASSWORD": password}))}

    def catalog(self):
        def make():
            self.data("make-catalog", self.native("postgresql"), self.arguments.tables)
            return self.native("postgresql")
        return self.once("catalog", make)

    # --- a display --------------------------------------------------------------------------------

    def display(self):
        """A bare one without a window manager, and a home folder without settings."""
        def start():
            ends = os.pipe()
            process = self.stack.enter_context(subprocess.Popen(
                ["Xvfb", "-displayfd", str(ends[1]), "-screen", "0", "1280x900x24", "-nolisten",
                 "tcp"], pass_fds=[ends[1]], stderr=subprocess.DEVNULL))
            self.stack.callback(process.terminate)
            os.close(ends[1])
            with os.fdopen(ends[0]) as numbers:
                number = numbers.readline().strip()
            home = self.stack.enter_context(tempfile.TemporaryDirectory())
            return {"DISPLAY": ":" + number, "QT_QPA_PLATFORM": "xcb", "HOME": home,
                    "XDG_CONFIG_HOME": home, "WAYLAND_DISPLAY": ""}
        return self.once("display", start)

    def window(self, *arguments):
        return self.program("compare_window", *arguments, environment=self.display())

    def benchmarks(self, names):
        """What Google Benchmark tells of those that match, in turns: a list of figures by the name."""
        done = subprocess.run(
            [str(self.programs.parent / "tessel_bench"), "--benchmark_filter=" + names,
             "--benchmark_format=json", "--benchmark_enable_random_interleaving=true",
             "--benchmark_repetitions=%d" % (2 * self.arguments.rounds)],
            capture_output=True, text=True, check=False, timeout=900)
        if done.returncode != 0:
            raise Failed("tessel_bench: %s" % (done.stderr.strip() or done.returncode))
        told = {}
        for result in json.loads(done.stdout)["benchmarks"]:
            if result["run_type"] != "iteration":
                continue
            result["seconds"] = result["real_time"] * UNITS[result["time_unit"]]
            told.setdefault(result["run_name"], []).append(result)
        return told

    def until_shown(self, program):
        return self.program("compare_until_shown", self.programs / program,
                            environment=self.display())


# --- the table ------------------------------------------------------------------------------------

ROWS = {}


def row(name):
    """Registers what measures one or more lines of the table, in order."""
    def register(measure):
        ROWS[name] = measure
        return measure
    return register


class Table:
    def __init__(self):
        self.short = 0
        print("%-58s %10s %10s %8s %9s" % ("", "raw", "program", "ratio", "aim"))

    def line(self, text, raw, ours, value, aim, unit="x"):
        reached = value <= aim
        self.short += not reached
        print("%-58s %10s %10s %7s%s %8s%s  %s"
              % (text, raw, ours, "%.2f" % value if unit == "x" else "%.0f" % value, unit,
                 "%g" % aim, unit, "ok" if reached else "short"), flush=True)

    def fail(self, text, reason):
        self.short += 1
        print("%-58s %s  short" % (text, reason), flush=True)


def seconds(value):
    return "%.3f s" % value


def megabytes(value):
    return "%.0f MB" % (value / MEGABYTE)


def rounds_of(setting, *measures):
    """The figures of each measure, one after the other in each round; the first round only warms
    up."""
    told = [[] for _ in measures]
    for count in range(setting.arguments.rounds + 1):
        for number, measure in enumerate(measures):
            result = measure()
            if count > 0:
                told[number].append(result)
    return told


def median(results, name):
    return statistics.median(result[name] for result in results)


def ratio(ours, raw, name="seconds"):
    """Of the least figure of each: other work on the machine can only add to a time."""
    return min(result[name] for result in ours) / min(result[name] for result in raw)


def compare(setting, table, text, raw, ours, aim):
    raws, own = rounds_of(setting, raw, ours)
    table.line(text, seconds(median(raws, "seconds")), seconds(median(own, "seconds")),
               ratio(own, raws), aim)
    return raws, own


# --- rows -----------------------------------------------------------------------------------------

@row("sqlite")
def sqlite(setting, table):
    file = setting.file(setting.arguments.rows)
    raws, own = compare(setting, table, "SQLite: execute to last row",
                        lambda: setting.raw("sqlite", file),
                        lambda: setting.data("fetch", setting.sqlite(), QUERY), 1.15)
    table.line("SQLite: memory held", megabytes(median(raws, "held")),
               megabytes(median(own, "held")), ratio(own, raws, "held"), 1.1)


@row("postgresql")
def postgresql(setting, table):
    target = setting.orders("postgresql")
    _, own = compare(setting, table, "PostgreSQL native: execute to last row",
                     lambda: setting.raw("postgresql", target),
                     lambda: setting.data("fetch", target, QUERY), 1.2)
    peak = statistics.median(result["peak"] / result["held"] for result in own)
    table.line("PostgreSQL native: peak memory against what is held",
               megabytes(median(own, "held")), megabytes(median(own, "peak")), peak, 1.2)


@row("mariadb")
def mariadb(setting, table):
    target = setting.orders("mariadb")
    compare(setting, table, "MariaDB native: execute to last row",
            lambda: setting.raw("mariadb", target),
            lambda: setting.data("fetch", target, QUERY), 1.2)


def odbc(setting, table, server, name):
    setting.orders(server)
    compare(setting, table, "%s over ODBC: execute to last row" % name,
            lambda: setting.raw("odbc", setting.raw_odbc(server)),
            lambda: setting.data("fetch", setting.odbc(server), QUERY), 1.15)


@row("odbc-postgresql")
def odbc_postgresql(setting, table):
    odbc(setting, table, "postgresql", "PostgreSQL")


@row("odbc-mariadb")
def odbc_mariadb(setting, table):
    odbc(setting, table, "mariadb", "MariaDB")


def targets(setting):
    """Every provider, on the table of orders."""
    setting.orders("postgresql")
    setting.orders("mariadb")
    return {"SQLite": setting.sqlite(), "PostgreSQL native": setting.native("postgresql"),
            "MariaDB native": setting.native("mariadb"),
            "PostgreSQL over ODBC": setting.odbc("postgresql"),
            "MariaDB over ODBC": setting.odbc("mariadb")}


@row("stall")
def stall(setting, table):
    for name, target in targets(setting).items():
        own, = rounds_of(setting, lambda to=target: setting.window("stall", to, QUERY))
        table.line("Longest stall of the event loop: " + name, "-",
                   "%.1f ms" % (1000 * median(own, "stall")), 1000 * median(own, "stall"), 50, "ms")


def stall_lines(table, text, longest, work):
    """How long the event loop stood still, and how much of that its thread worked itself: for the
    rest it was ready, and servers and workers had the processors."""
    for what, value in (("longest stall", longest), ("most work between two turns", work)):
        table.line("%s: %s" % (text, what), "-", "%.1f ms" % (1000 * value), 1000 * value, 16, "ms")


def together_lines(setting, table, name, query, count):
    """Several connections at once against the slowest of them by itself."""
    text = "%d connections at once, %s" % (count, name)
    own, = rounds_of(setting, lambda: setting.window("together", setting.orders("postgresql"),
                                                     query, count))
    slowest, all_of_them = median(own, "slowest"), median(own, "together")
    table.line(text, seconds(slowest), seconds(all_of_them), all_of_them / slowest, 1.15)
    stall_lines(table, text, median(own, "stall"), median(own, "work"))


def against_loops(setting, table, count):
    """As many raw loops at once, where all of them and the server share the processors."""
    target = setting.orders("postgresql")
    raws, own = rounds_of(setting, lambda: setting.raw("postgresql-together", target, count),
                          lambda: setting.window("together", target, QUERY, count))
    table.line("%d connections at once, fetching, against raw loops" % count,
               seconds(median(raws, "seconds")), seconds(median(own, "together")),
               min(result["together"] for result in own) / min(raw["seconds"] for raw in raws),
               1.15)


@row("together")
def together(setting, table):
    for count in (3, 10):
        together_lines(setting, table, "sleeping", "select pg_sleep(1)", count)
    for count in (3, 10):
        together_lines(setting, table, "fetching", QUERY, count)


@row("together-loops")
def together_loops(setting, table):
    for count in (3, 10):
        against_loops(setting, table, count)


# What runs for long without a row, and what gives rows for long.
NUMBERS = "with recursive c(n) as (select 1 union all select n + 1 from c) select "
LONG = {"SQLite": (NUMBERS + "n from c where n < 0", NUMBERS + "n, 'row ' || n from c"),
        "PostgreSQL native": ("select pg_sleep(60)",
                              "select generate_series(1, 1000000000), repeat('x', 20)"),
        "MariaDB native": ("select sleep(60)",
                           "select seq, repeat('x', 20) from seq_1_to_1000000000"),
        "PostgreSQL over ODBC": ("select pg_sleep(60)", QUERY),
        "MariaDB over ODBC": ("select sleep(60)", QUERY)}


@row("cancel")
def cancel(setting, table):
    for name, target in targets(setting).items():
        for phase, sql in zip(("execute", "fetch"), LONG[name]):
            text = "Cancel until usable: %s, %s" % (name, phase)
            own, = rounds_of(setting, lambda to=target, what=sql, when=phase:
                             setting.data("cancel", to, what, when))
            if not all(result["cancelled"] for result in own):
                table.fail(text, "ended before it was cancelled")
                continue
            kept = all(result["open"] for result in own)
            table.line(text + ("" if kept else " (lost)"), "-", seconds(median(own, "seconds")),
                       1000 * median(own, "seconds"), 200, "ms")


@row("show")
def show(setting, table):
    own, = rounds_of(setting, lambda: setting.window("show", setting.sqlite(), QUERY))
    for figure, text in (("first", "Rows shown: model set to first paint"),
                         ("end", "Rows shown: jump to the end")):
        table.line(text, "-", "%.1f ms" % (1000 * median(own, figure)),
                   1000 * median(own, figure), 50, "ms")


@row("csv")
def csv(setting, table):
    told = setting.benchmarks("CsvRawLoop|Convert/csv$")
    raw, own = told["CsvRawLoop"], told["Convert/csv"]
    table.line("CSV of 1000000 records", seconds(median(raw, "seconds")),
               seconds(median(own, "seconds")), ratio(own, raw), 1.0)
    peak = max(result["peak/text"] for result in own)
    table.line("CSV: peak memory against the text", megabytes(own[0]["MB"] * MEGABYTE),
               megabytes(own[0]["MB"] * MEGABYTE * peak), peak, 1.1)


@row("arrange")
def arrange(setting, table):
    told = setting.benchmarks("BareS|Arrange/sort_by_c|Find$|Filter$")
    for raw, own, text, most in (
            ("BareSort/customer", "Arrange/sort_by_customer", "sorted by a text, many values", 1.3),
            ("BareSort/city", "Arrange/sort_by_city", "sorted by a text, few values", 1.3),
            ("BareSearch", "Find", "a text found in all cells", 1.3),
            ("BareSearch", "Filter", "filtered by a text", 1.5)):
        text = "1000000 records " + text
        table.line(text, seconds(median(told[raw], "seconds")),
                   seconds(median(told[own], "seconds")), ratio(told[own], told[raw]), most)
        longest = statistics.median(result["worst ms"] for result in told[own])
        table.line("  longest step", "-", "%.1f ms" % longest, longest, 16, "ms")


@row("pictures")
def pictures(setting, table):
    told = setting.benchmarks("BM_ChartOfAMillionPoints|BM_DiagramOf200Tables|OpenHex")
    for name, text, most in (
            ("BM_ChartOfAMillionPoints/0", "Chart of 1000000 points: a line", 60),
            ("BM_ChartOfAMillionPoints/1", "Chart of 1000000 points: a band of points", 60),
            ("BM_ChartOfAMillionPoints/2", "Chart of 1000000 points: all over", 60),
            ("BM_DiagramOf200Tables", "Diagram of 200 tables", 1000),
            ("OpenHex", "100 MB of bytes opened as hex", 16)):
        took = 1000 * median(told[name], "seconds")
        table.line(text, "-", "%.1f ms" % took, took, most, "ms")


@row("export")
def export(setting, table):
    told = setting.benchmarks("CsvRawFile|Export/csv|Export/sheets|SheetsRaw")
    for raw, own, text, most in (("CsvRawFile", "Export/csv", "CSV", 1.2),
                                 ("SheetsRaw/iterations:1", "Export/sheets/iterations:1", "XLSX", 1.2)):
        table.line("Export of 1000000 records to a file, " + text, seconds(median(told[raw], "seconds")),
                   seconds(median(told[own], "seconds")), ratio(told[own], told[raw]), most)
    peak = max(result["peakMB"] for result in told["Export/csv"])
    table.line("Export as CSV: memory beside the rows", "-", "%.0f MB" % peak, peak, 32, "MB")


@row("big")
def big(setting, table):
    target = setting.sqlite(setting.arguments.big_rows)
    rounds = min(setting.arguments.rounds, 3)
    free, kept = [], []
    setting.data("fetch", target, "select count(*) from orders")
    for _ in range(rounds):
        free.append(setting.data("fetch-large", target, QUERY, 100000))
        kept.append(setting.data("fetch-large", target, QUERY, 512))
    text = "%d rows with a budget of 512 MB: " % setting.arguments.big_rows
    if any(result["rows"] != setting.arguments.big_rows for result in kept):
        return table.fail(text, "rows are missing")
    table.line(text + "time", seconds(median(free, "seconds")), seconds(median(kept, "seconds")),
               ratio(kept, free), 1.5)
    table.line(text + "resident", megabytes(median(free, "peak")), megabytes(median(kept, "peak")),
               median(kept, "peak") / MEGABYTE, 700, "MB")


@row("budget")
def budget(setting, table):
    rows, results, limit = setting.arguments.rows, 10, 512
    alone, kept = [], []
    setting.data("fetch", setting.sqlite(), "select count(*) from orders")
    for _ in range(min(setting.arguments.rounds, 3)):
        alone.append(setting.data("fetch-together", setting.sqlite(), QUERY, 100000, results))
        kept.append(setting.data("fetch-together", setting.sqlite(), QUERY, limit, results))
    text = "%d results of %d rows with a budget of %d MB: " % (results, rows, limit)
    if any(result["sum"] != alone[0]["sum"] for result in kept):
        return table.fail(text, "rows are missing")
    table.line(text + "time", seconds(median(alone, "seconds")), seconds(median(kept, "seconds")),
               ratio(kept, alone), 1.5)
    table.line(text + "resident", megabytes(median(alone, "peak")),
               megabytes(median(kept, "peak")), median(kept, "peak") / MEGABYTE, limit + 188, "MB")
    stall_lines(table, text[:-2], *(max(result[name] for result in kept)
                                    for name in ("longest", "work")))


@row("merged")
def merged(setting, table):
    own, = rounds_of(setting, lambda: setting.program("compare_combined", "merge", 10, 100_000))
    text = "Merged rows of 10 results of 100000 rows: "
    table.line(text + "opened", "-", "%.1f ms" % (1000 * median(own, "seconds")),
               1000 * median(own, "seconds"), 50, "ms")
    for figure, what in (("row", "a row"), ("sorted-row", "a sorted row")):
        table.line(text + what, "-", "%.1f B" % median(own, figure), median(own, figure), 24, "B")


@row("differences")
def differences(setting, table):
    rows = setting.arguments.rows
    for order, text in (("same", "same order"), ("mixed", "mixed order")):
        _, own = compare(setting, table, "Differences of 2 x %d rows, %s" % (rows, text),
                         lambda way=order: setting.program("compare_combined", "join", rows, way),
                         lambda way=order: setting.program("compare_combined", "differences", rows,
                                                           way), 1.5)
        table.line("Differences, %s: longest step" % text, "-",
                   "%.1f ms" % (1000 * median(own, "longest")), 1000 * median(own, "longest"), 10,
                   "ms")
        table.line("Differences, %s: memory a row meanwhile" % text, "-",
                   "%.1f B" % median(own, "peak-row"), median(own, "peak-row"), 24, "B")


def timed(command, environment=None, text=None):
    """The seconds that another program takes, its start with it."""
    begin = time.perf_counter()
    done = subprocess.run(command, capture_output=True, text=True, check=False, input=text,
                          env={**os.environ, **(environment or {})})
    if done.returncode != 0 or done.stderr.strip():
        raise Failed("%s: %s" % (command[0], done.stderr.strip()))
    return {"seconds": time.perf_counter() - begin}


@row("import")
def imports(setting, table):
    text = setting.once("csv", lambda: setting.orders_csv())
    rows = setting.arguments.rows
    for name, (target, peer) in setting.importers(text).items():
        def own(to=target):
            setting.program("compare_load", "prepare", to)
            told = setting.program("compare_load", "load", to, text)
            if told["rows"] != rows:
                raise Failed("rows are missing")
            return told

        def raw(to=target, run=peer):
            setting.program("compare_load", "prepare", to)
            return run()
        _, told = compare(setting, table, "Import of %d rows: %s" % (rows, name), raw, own, 1.3)
        table.line("Import: most memory, " + name, "-", megabytes(median(told, "peak")),
                   median(told, "peak") / MEGABYTE, 64, "MB")
    told, = rounds_of(setting, lambda: setting.program("compare_load", "scan", text))
    table.line("Import: longest slice of looking through", "-",
               "%.1f ms" % (1000 * median(told, "longest")), 1000 * median(told, "longest"), 16, "ms")


@row("start")
def start(setting, table):
    compare(setting, table, "Start of the program until its window is on the screen",
            lambda: setting.until_shown("compare_start_floor"),
            lambda: setting.until_shown("Tessel"), 1.5)


@row("catalog")
def catalog(setting, table):
    target = setting.catalog()
    compare(setting, table, "Catalog of %d tables x 20 columns" % setting.arguments.tables,
            lambda: setting.raw("catalog", target),
            lambda: setting.data("catalog", target), 1.3)


# The conversion of rows to CSV, against a tight loop of formatting, stands here.


def read_arguments():
    parser = argparse.ArgumentParser(prog="bench/compare.sh", description=__doc__)
    parser.add_argument("--programs", type=pathlib.Path, required=True, help=argparse.SUPPRESS)
    parser.add_argument("--rows", type=int, default=1_000_000, help="rows of the table")
    parser.add_argument("--big-rows", type=int, default=10_000_000,
                        help="rows of the table that does not fit into its budget")
    parser.add_argument("--tables", type=int, default=10_000, help="tables of the catalog")
    parser.add_argument("--rounds", type=int, default=5, help="counted rounds of each row")
    parser.add_argument("--only", help="names of rows, with commas between them")
    parser.add_argument("--list", action="store_true", help="only list the names of the rows")
    return parser.parse_args()


def main():
    arguments = read_arguments()
    if arguments.list:
        print("\n".join(ROWS))
        return 0
    names = arguments.only.split(",") if arguments.only else list(ROWS)
    unknown = [name for name in names if name not in ROWS]
    if unknown:
        print("compare: there is no row " + ", ".join(unknown), file=sys.stderr)
        return 2
    table = Table()
    with contextlib.ExitStack() as stack:
        setting = Setting(arguments, stack)
        for name in names:
            try:
                ROWS[name](setting, table)
            except (Failed, subprocess.TimeoutExpired) as failure:
                table.fail(name, str(failure))
    print("every row is ok" if table.short == 0 else "%d short" % table.short)
    return 0 if table.short == 0 else 1


if __name__ == "__main__":
    sys.exit(main())
