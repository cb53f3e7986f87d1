"""The checks. Each takes a Tree and returns a list of complaints, empty if all is well."""
import collections
import re
import shutil
import subprocess

import definitions
import helpbook
import keyspage

IMPLEMENTATIONS = ("data", "desktop", "system")
PRODUCT = ("contract", "logic", "main") + IMPLEMENTATIONS
# The folders of each floor, each using only itself and those before it.
FLOORS = {
    "contract": ("text", "system", "base", "sql", "data", "desktop"),
    "logic": ("program", "text", "connections", "tags", "query", "schema", "import", "results", "plan", "together", "app"),
    "data": ("rows", "combined", "changes", "providers", "tasks", "cursor"),
    "desktop": ("plain", "base", "look", "services", "dialogs", "controls", "editor", "tree", "grid", "drawings", "access", "window", "help", "keyring"),
}
LOGIC_LIBRARIES = {"pugixml.hpp", "utf8proc.h"}
GUARD = "cmake/forbidden"
ICON_LIST = "desktop/icons.qrc"
ICON_USE = re.compile(r":/icons/([\w.-]+)")
ICON_ENTRY = re.compile(r'<file alias="([^"]+)">([^<]+)</file>')

ODBC_FUNCTIONS = (
    "AllocHandle BindCol BindParameter BrowseConnect BulkOperations Cancel CloseCursor ColAttribute "
    "ColumnPrivileges Columns Connect CopyDesc DataSources DescribeCol DescribeParam Disconnect "
    "DriverConnect Drivers EndTran ExecDirect Execute Fetch FetchScroll ForeignKeys FreeHandle FreeStmt "
    "GetConnectAttr GetCursorName GetData GetDescField GetDescRec GetDiagField GetDiagRec GetEnvAttr "
    "GetFunctions GetInfo GetStmtAttr GetTypeInfo MoreResults NativeSql NumParams NumResultCols ParamData "
    "Prepare PrimaryKeys ProcedureColumns Procedures PutData RowCount SetConnectAttr SetCursorName "
    "SetDescField SetDescRec SetEnvAttr SetPos SetStmtAttr SpecialColumns Statistics TablePrivileges "
    "Tables").split()
# The one door to each database's library, and to that of sheets: a header and its sources, and the names of its functions.
DOORS = (
    ("data/providers/odbc/driver/OdbcApi", "SQL(?:%s)[AW]?" % "|".join(ODBC_FUNCTIONS)),
    ("data/providers/postgresql/client/PqApi", r"PQ[a-z]\w*|pq::[A-Z]\w*"),
    ("data/providers/mariadb/MariaApi", r"(?:mysql|mariadb)_\w+"),
    ("data/providers/sqlite/SqliteApi", r"sqlite3_\w+"),
    ("system/sheets/XlsxFile", r"(?:lxw|workbook|worksheet)_\w+"),
)
INLINE_MEMBER = re.compile(r"^inline\b[^({;=]*\w::~?\w+\(", re.MULTILINE)
EVENT_PUMP = re.compile(r"\bprocessEvents\b")
# Built from pieces, so that this file does not hold what it looks for.
WORDS = re.compile("|".join((
    r"\b[Ss]pecific" r"ations?\b", r"\b[Ss]pe" r"c\b", r"\bPart" r"s? \d", r"\bseed doc" r"ument",
    r"\b[Ii]ssue #?\d", r"\bsub" r"agent", r"/wo" r"rk/", r"/fa" r"rm/", r"/ro" r"ot/")))
WORDS_FREE = ("LICENSE",)


SECTION_MARK = re.compile(r"^[ \t]*// ---(?!-).*$|^[ \t]*// -{4,}[ \t]*$", re.M)
LINE_WIDTH = 100
# A line that is a comment, or ends with one on what it declares.
COMMENT_LINE = re.compile(r"^ *//|///<")
MOST_FILES = 15  # Of C++ in one folder of the product, its sub-folders apart.
LEAST_COMMENT = 35  # Percent of the lines of a header of the contract.


class Skipped(Exception):
    """The check cannot be made here; the text says why."""


def is_standard(name):
    """Whether <name> is a header of the C++ standard library: no folder and no ending."""
    return re.fullmatch(r"[a-z_0-9]+", name) is not None


def contract_part(name):
    return name.startswith("contract/")


def include_complaints(tree, paths, allowed):
    return ["%s:%d: may not include %s" % (path, line, name)
            for path in paths for line, angled, name in tree.includes(path)
            if not (angled and is_standard(name)) and not allowed(name)]


def logic_includes(tree):
    """The logic includes the standard library, the contract, itself, pugixml and utf8proc."""
    return include_complaints(
        tree, tree.code_paths("logic"),
        lambda name: name in LOGIC_LIBRARIES or name.startswith("logic/") or contract_part(name))


def contract_includes(tree):
    """The contract includes the standard library and itself."""
    return include_complaints(tree, tree.code_paths("contract"), contract_part)


def implementation_includes(tree):
    """The implementations do not know the logic, nor each other."""
    def complaints(folder):
        foreign = tuple(name + "/" for name in ("logic",) + IMPLEMENTATIONS if name != folder)
        return ["%s:%d: may not include %s" % (path, line, name)
                for path in tree.code_paths(folder) for line, _, name in tree.includes(path)
                if name.startswith(foreign)]
    return [found for folder in IMPLEMENTATIONS for found in complaints(folder)]


def upward_includes(tree):
    """Within a floor a folder includes only itself and those below it."""
    def complaints(floor, order):
        for rank, folder in enumerate(order):
            above = tuple("%s/%s/" % (floor, name) for name in order[rank + 1:])
            for path in tree.code_paths("%s/%s" % (floor, folder)):
                for line, _, name in tree.includes(path):
                    if name.startswith(above):
                        yield "%s:%d: may not include %s, which is above it" % (path, line, name)
    return [found for floor, order in FLOORS.items() for found in complaints(floor, order)]


def library_doors(tree):
    """Every call of a database's library passes its one door. Benchmarks may call it."""
    def naked_calls(door, functions):
        call = re.compile(r"(?<![\w.>])(?:%s)\s*\(" % functions)
        paths = [path for path in tree.code_paths() if not path.startswith((door, "bench/"))]
        return [found for path in paths for found in tree.find(call, path, tree.code(path))]
    return [found for door, functions in DOORS for found in naked_calls(door, functions)]


def inline_members(tree):
    """Members are inline in headers only. In a source another source that calls them does not link,
    but only where the compiler optimises."""
    return [found for path in tree.code_paths() if path.endswith(".cpp")
            for found in tree.find(INLINE_MEMBER, path, tree.code(path))]


def event_pump(tree):
    """Events are pumped in one file of the desktop at most, and nowhere else; tests may."""
    paths = [path for path in tree.code_paths() if not path.startswith("tests/") and
             EVENT_PUMP.search(tree.code(path))]
    home = [path for path in paths if path.startswith("desktop/")][:1]
    return ["%s pumps events%s" % (path, "; so does " + home[0] if home else "")
            for path in paths if path not in home]


def forbidden_words(tree):
    """Words and machine paths that do not belong into the project."""
    return [found for path in tree.paths if path not in WORDS_FREE and tree.text(path) is not None
            for found in tree.find(WORDS, path, path + "\n" + tree.text(path))]


def include_graph(tree):
    known = set(tree.paths)
    return {path: [name for _, _, name in tree.includes(path) if name in known]
            for path in tree.code_paths()}


def include_cycles(tree):
    """No file includes itself, directly or through others."""
    graph, finished, complaints = include_graph(tree), set(), []

    def visit(path, trail):
        if path in trail:
            complaints.append(" -> ".join(trail[trail.index(path):] + [path]))
        elif path not in finished:
            for name in graph[path]:
                visit(name, trail + [path])
            finished.add(path)

    for path in graph:
        visit(path, [])
    return complaints


def unit_of(path):
    return path.rsplit(".", 1)[0]


def unit_circles(tree):
    """No unit of the product, a header and its source taken together, includes itself through
    others."""
    paths, graph, trail, finished = tree.code_paths(*PRODUCT), {}, [], set()
    units, complaints = {unit_of(path) for path in paths}, []
    for path in paths:
        used = {unit_of(name) for _, _, name in tree.includes(path)}
        graph.setdefault(unit_of(path), set()).update(sorted(used & units - {unit_of(path)}))

    def visit(unit):
        if unit in trail:
            complaints.append(" -> ".join(trail[trail.index(unit):] + [unit]))
        elif unit not in finished:
            trail.append(unit)
            for used in sorted(graph[unit]):
                visit(used)
            finished.add(trail.pop())

    for unit in sorted(graph):
        visit(unit)
    return complaints


def folder_of(path):
    return path.rsplit("/", 1)[0]


def folder_pairs(tree):
    """No two folders of the product include each other; a folder and one inside it are two."""
    uses = {}
    for path in tree.code_paths(*PRODUCT):
        for line, _, name in tree.includes(path):
            if "/" in name and folder_of(name) != folder_of(path):
                uses.setdefault((folder_of(path), folder_of(name)), "%s:%d" % (path, line))
    return ["%s: %s and %s include each other" % (place, user, used)
            for (user, used), place in sorted(uses.items()) if (used, user) in uses]


def folder_sizes(tree):
    """A folder of the product holds few enough C++ files to be read as a list."""
    files = collections.Counter(folder_of(path) for path in tree.code_paths(*PRODUCT))
    return ["%s holds %d files, more than %d" % (folder, count, MOST_FILES)
            for folder, count in sorted(files.items()) if count > MOST_FILES]


def section_marks(tree):
    """A section mark is one line, "// --- title ---...", no longer than lines may be: so the formatter
    leaves it whole."""
    def is_whole(mark):
        return len(mark) <= LINE_WIDTH and re.fullmatch(r" *// --- \S.*\S -{2,}", mark)

    return ["%s:%d: is no whole section mark" % (path, tree.text(path).count("\n", 0, match.start()) + 1)
            for path in tree.code_paths() for match in SECTION_MARK.finditer(tree.text(path))
            if not is_whole(match.group())]


def comment_share(text):
    """Percent of the lines that are comment."""
    lines = text.splitlines() or [""]
    return 100 * sum(COMMENT_LINE.search(line) is not None for line in lines) / len(lines)


def contract_comments(tree):
    """Each header of the contract says enough that a second implementation could be written from it: at
    least so many of its lines are comment."""
    shares = [(path, comment_share(tree.text(path))) for path in tree.code_paths("contract")
              if path.endswith(".h")]
    return ["%s: %d %% of the lines are comment, at least %d %% are needed" % (path, share, LEAST_COMMENT)
            for path, share in shares if share < LEAST_COMMENT]


def formatting(tree):
    """Changed files are as clang-format would write them."""
    if not shutil.which("clang-format"):
        raise Skipped("clang-format is not installed")
    changed = set(tree.changed())
    paths = [path for path in tree.code_paths() if path in changed]
    return [path + ": run tools/format.sh on it" for path in paths if misformatted(tree, path)]


def misformatted(tree, path):
    command = ["clang-format", "--dry-run", "--Werror", "--style=file", path]
    return subprocess.run(command, cwd=tree.root, capture_output=True).returncode != 0


def guard_headers(tree):
    """With the logic's include path, each header of a database library refuses to compile."""
    compiler = shutil.which("c++") or shutil.which("g++")
    if not compiler:
        raise Skipped("there is no compiler here")
    guards = [path for path in tree.paths if path.startswith(GUARD + "/")]
    if not guards:
        return ["there are no headers in " + GUARD]
    return [path + " compiles" for path in guards if compiles(tree, compiler, path)]


def compiles(tree, compiler, guard):
    source = "#include <%s>\n" % guard.rsplit("/", 1)[1]
    command = [compiler, "-x", "c++", "-fsyntax-only", "-I", GUARD, "-"]
    return subprocess.run(command, cwd=tree.root, input=source.encode(), capture_output=True).returncode == 0


def one_definition(tree):
    """No two files of the product define a type of one name in one namespace; in unnamed ones they may."""
    return definitions.repeated((path, tree.code(path)) for path in tree.code_paths(*PRODUCT))


def icons(tree):
    """Every icon used is in the icon list, and every icon in the list is there."""
    listed = dict(ICON_ENTRY.findall(tree.text(ICON_LIST))) if ICON_LIST in tree.paths else {}
    missing = ["%s: there is no %s" % (ICON_LIST, path) for path in listed.values()
               if "desktop/" + path not in tree.paths]
    users = [path for path in tree.paths if path.startswith(("desktop/", "main/", "tests/"))
             and path.endswith((".ui", ".cpp", ".h"))]
    unknown = ["%s: the icon %s is not in %s" % (path, name, ICON_LIST)
               for path in users for name in sorted(set(ICON_USE.findall(tree.text(path))))
               if name not in listed]
    return missing + unknown


def help_book(tree):
    """The help book is whole, and has a topic for every number and form of the program."""
    return helpbook.help_book(tree, ("logic",))


def keys_page(tree):
    """The keys that menus and tool tips show stand on the page of keys."""
    return keyspage.keys_page(tree)


ALL = (logic_includes, contract_includes, implementation_includes, upward_includes,
       library_doors, inline_members, event_pump, forbidden_words, include_cycles, unit_circles,
       folder_pairs, folder_sizes,
       section_marks, contract_comments, formatting, guard_headers, one_definition, icons, help_book, keys_page)
