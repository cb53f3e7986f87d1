"""Proof that each check accepts a good tree and reports what is wrong in a bad one."""
import pathlib
import tempfile

import checks
from tree import Tree

GOOD = {
    ".clang-format": "BasedOnStyle: LLVM\n",
    "logic/app/Main.cpp": '#include "logic/app/Main.h"\n\n#include "logic/app/Sized.h"\n#include <pugixml.hpp>\n#include <vector>\n',
    "logic/app/Main.h": '#pragma once\n#include "contract/desktop/Window.h"\n#include <string>\n',
    "logic/app/Sized.h": '#pragma once\n#include "contract/desktop/Width.h"\n',
    "contract/desktop/Window.h": "#pragma once\n#include <cstdint>\n/// In twips.\n"
                                 "inline int Window::Width() const { return 1; } ///< At least 1.\n",
    "contract/desktop/Width.h": "#pragma once\n// Of a window, in twips.\n",
    "contract/desktop/Width.cpp": "inline std::string Width() { return Text(); }\n",
    "data/providers/odbc/driver/OdbcApi.cpp": "int Run() { return SQLExecute(nullptr); }\n",
    "data/providers/odbc/Query.cpp": "// SQLExecute() is called elsewhere.\nauto name = \"SQLFetch(\";\n",
    "data/providers/postgresql/client/PqApi.h": "inline int Kind() { return PQresultStatus(nullptr); }\n",
    "data/providers/postgresql/Rows.cpp": "// PQexec() blocks.\nPqResult PqNext() { return PqRow(); }\n",
    "data/providers/mariadb/MariaApi.cpp": "int Run() { return mysql_query(nullptr, nullptr); }\n",
    "data/providers/sqlite/SqliteApi.h": "inline int Next() { return sqlite3_step(nullptr); }\n",
    "system/sheets/XlsxFile.cpp": "int Close() { return workbook_close(nullptr); }\n",
    "data/providers/sqlite/Step.cpp": "// sqlite3_step() waits for locks.\nauto sqlite3_rows = Rows();\n",
    "bench/raw_mariadb.cpp": "int Run() { return mysql_query(nullptr, nullptr); }\n",
    "desktop/Loop.cpp": "void Pump() { app->processEvents(); }\n",
    "tests/desktop/Grid.cpp": "void Settle() { app->processEvents(); }\ninline std::string Own() { return {}; }\n",
    "desktop/icons.qrc": '<file alias="a.svg">icons/a.svg</file>\n',
    "desktop/icons/a.svg": "<svg/>\n",
    "desktop/forms/a.ui": '<ui><iconset>:/icons/a.svg</iconset><action name="a"><property name="shortcut">'
                          '<string>Ctrl+PgUp</string></property></action></ui>\n',
    "help/keyboard.html": "<tr><td>Ctrl+PageUp, F5</td><td>back</td></tr>",
    "help/book.xml": '<book start="a.html"><topic page="a.html#x"/><topic page="keyboard.html"/><context number="9100" page="a.html"/>'
                     '<form name="a" page="a.html"/></book>',
    "help/a.html": '<h2 id="x">A</h2><a href="#x">x</a><a href="a.html#x">x</a>',
    "desktop/help.qrc": "<file>../help/book.xml</file><file>../help/a.html</file>"
                        "<file>../help/keyboard.html</file>",
    "logic/app/Help.cpp": "constexpr int questionContext = 9100; // otherContext = 1",
    "logic/query/Places.cpp": "namespace tessel {\nnamespace {\nstruct Place {\n  int row;\n};\n} // namespace\n"
                              "class Query::Place {};\nvoid F() {\n  struct Row {};\n}\n} // namespace tessel\n",
    "logic/tags/Places.cpp": "namespace tessel {\nnamespace {\nstruct Place {\n  long row;\n};\n} // namespace\n"
                             "class Row;\nstruct Row {\n  enum class Place { Here };\n};\n} // namespace tessel\n",
    "logic/app/Sections.h": "#pragma once\n// --- rows and fields %s\n// - a list\n" % ("-" * 50),
    **{"data/rows/%s.h" % letter: "#pragma once\n" for letter in "ABCDEFGHIJKLMNO"},
    "logic/query/b.h": '#pragma once\n#include "logic/query/text/a.h"\n',
    "logic/query/text/a.h": "#pragma once\n",
    "README.md": "Particular text, participle 7.\n",
    "LICENSE": "The licence may say Part" " 6.\n",
    "cmake/forbidden/sql.h": '#error "not here"\n',
}

# What is wrong: the check, a file and its text, and a piece of the complaint expected.
BAD = (
    ("logic_includes", "logic/query/a.cpp", "#include <QWidget>\n", "logic/query/a.cpp:1: may not include QWidget"),
    ("logic_includes", "logic/results/a.h", "\n#include <sqlite3.h>\n", "logic/results/a.h:2"),
    ("logic_includes", "logic/schema/a.cpp", '#include "desktop/Grid.h"\n', "desktop/Grid.h"),
    ("logic_includes", "logic/connections/a.cpp", "#  include <sql.h>\n", "sql.h"),
    ("contract_includes", "contract/base/Bad.h", '#include "logic/app/Main.h"\n', "contract/base/Bad.h:1"),
    ("contract_includes", "contract/base/Bad.cpp", "#include <pugixml.hpp>\n", "pugixml.hpp"),
    ("implementation_includes", "data/a.cpp", '#include "desktop/Grid.h"\n', "data/a.cpp:1"),
    ("implementation_includes", "desktop/a.h", '#include "logic/app/Main.h"\n', "desktop/a.h:1"),
    ("implementation_includes", "system/a.cpp", '#include "data/Row.h"\n', "system/a.cpp:1"),
    ("upward_includes", "logic/tags/a.cpp", '#include "logic/query/b.h"\n', "tags/a.cpp:1"),
    ("upward_includes", "contract/base/a.h", '#include "contract/data/b.h"\n', "base/a.h:1"),
    ("upward_includes", "data/rows/a.cpp", '#include "data/providers/b.h"\n', "rows/a.cpp:1"),
    ("upward_includes", "desktop/services/a.h", '#include "desktop/window/b.h"\n', "services/a.h:1"),
    ("library_doors", "data/providers/odbc/Other.cpp", "auto r = ::SQLFetch(h);\n", "Other.cpp:1: SQLFetch("),
    ("library_doors", "logic/app/b.cpp", "int r =\n    SQLDriverConnectW (h);\n", "logic/app/b.cpp:2"),
    ("library_doors", "data/providers/postgresql/Rows.cpp", "auto r = PQgetResult(c);\n", "PQgetResult("),
    ("library_doors", "data/providers/postgresql/Rows.cpp", "auto r = pq::GetResult(c);\n", "pq::GetResult("),
    ("library_doors", "tests/data/a.cpp", "int x = PQntuples\n(r);\n", "a.cpp:1"),
    ("library_doors", "data/providers/mariadb/Rows.cpp", "mysql_free_result(r);\n", "mysql_free_result("),
    ("library_doors", "logic/app/b.cpp", "if (mariadb_connection (c)) Go();\n", "b.cpp:1"),
    ("library_doors", "data/providers/sqlite/Rows.cpp", "sqlite3_step(s);\n", "sqlite3_step("),
    ("library_doors", "system/Files.cpp", "worksheet_write_blank(s);\n", "worksheet_write_blank("),
    ("library_doors", "tests/data/b.cpp", "\nint x = sqlite3_changes(d);\n", "b.cpp:2"),
    ("inline_members", "logic/app/b.cpp", "\ninline std::string B::C() const {\n", "logic/app/b.cpp:2: inline std::string"),
    ("event_pump", "logic/app/b.cpp", "void F() { processEvents(); }\n", "logic/app/b.cpp pumps events"),
    ("event_pump", "desktop/Second.cpp", "void F() { processEvents(); }\n", "Second.cpp pumps"),
    ("inline_members", "logic/app/e.cpp", "inline void\nE::F() const { G(); }\n", "logic/app/e.cpp:1"),
    ("help_book", "logic/app/Help.cpp", "constexpr int noticeContext = 9200;", "no topic for 9200"),
    ("help_book", "logic/app/a.cpp", "constexpr int noticeContext{9201};", "no topic for 9201"),
    ("help_book", "logic/app/a.cpp", "void F() { help.ShowHelpTopic(9202); }", "no topic for 9202"),
    ("help_book", "logic/app/a.cpp", "void F() { window.SetHelpContext( 9203); }", "no topic for 9203"),
    ("help_book", "logic/app/a.cpp", 'void F() { HelpMsgBox("a (b), c", ok,\n 9204); }', "no topic for 9204"),
    ("help_book", "logic/app/a.cpp", 'bool F() { return GetText(global, 9205, "a", b); }', "no topic for 9205"),
    ("help_book", "logic/app/a.cpp", 'void F() { ShowText(a, b, c, {9206, "", 1}); }', "no topic for 9206"),
    ("help_book", "logic/app/a.cpp", 'TextViewOptions options{9207, ""};', "no topic for 9207"),
    ("help_book", "help/a.html", '<a href="b.html">b</a><h2 id="x">', "help/a.html: there is no b.html"),
    ("help_book", "help/a.html", "<p>no place</p>", "there is no a.html#x"),
    ("help_book", "help/b.html", "<p>b</p>", "the contents lack b.html"),
    ("help_book", "desktop/forms/b.ui", "<ui/>", "no topic for the form"),
    ("forbidden_words", "docs/a.md", "one\nas the specific" "ation says\n", "docs/a.md:3"),
    ("forbidden_words", "logic/app/c.h", "// see Part" " 4.1\n", "Part" " 4"),
    ("forbidden_words", "docs/b.md", "in /wo" "rk/main\n", "/wo" "rk/"),
    ("forbidden_words", "docs/spe" "c.md", "clean\n", "spe" "c"),
    ("include_cycles", "contract/desktop/Window.h", '#include "logic/app/Main.h"\n', " -> "),
    ("include_cycles", "logic/app/Self.h", '#include "logic/app/Self.h"\n', "logic/app/Self.h -> logic/app/Self.h"),
    ("unit_circles", "contract/desktop/Width.cpp", '#include "logic/app/Main.h"\n#include "contract/desktop/Width.h"\n',
     "contract/desktop/Width -> logic/app/Main -> logic/app/Sized -> contract/desktop/Width"),
    ("folder_pairs", "logic/query/text/a.h", '#include "logic/query/b.h"\n', "logic/query/text/a.h:1: logic/query/text and"),
    ("folder_sizes", "data/rows/P.h", "#pragma once\n", "data/rows holds 16 files"),
    ("section_marks", "logic/app/b.h", "#pragma once\n// --- rows\n// %s\n" % ("-" * 90), "logic/app/b.h:3"),
    ("section_marks", "logic/app/b.cpp", "\n  // --- rows %s\n" % ("-" * 90), "logic/app/b.cpp:2"),
    ("contract_comments", "contract/base/Bare.h", "#pragma once\n/// In twips.\nint Width();\n",
     "contract/base/Bare.h: 33 %"),
    ("contract_comments", "contract/base/Short.h", "#pragma once\nint a = 1;  // In twips.\n", "Short.h: 0 %"),
    ("formatting", "logic/app/d.cpp", "int  f( ){return 1 ;}\n", "logic/app/d.cpp"),
    ("guard_headers", "cmake/forbidden/sqlite3.h", "#pragma once\n", "sqlite3.h compiles"),
    ("keys_page", "desktop/forms/b.ui", '<ui><action name="c"><property name="text"><string>&amp;Lock&#9;Ctrl+L</string>'
     "</property></action></ui>", "c shows Ctrl+L"),
    ("keys_page", "desktop/forms/b.ui", '<ui><widget name="c"><property name="toolTip"><string>Open (Ctrl+O)</string>'
     "</property></widget></ui>", "c shows Ctrl+O"),
    ("keys_page", "help/keyboard.html", "<tr><td>F5</td><td>run</td></tr>", "a shows Ctrl+PageUp"),
    ("one_definition", "data/rows/A.h", "#pragma once\nnamespace tessel {\nstruct Row : Base {\n};\n}\n",
     "tessel::Row is defined in data/rows/A.h:3 too"),
    ("one_definition", "logic/query/Other.cpp", "namespace tessel {\nenum class Row { A };\n}\n", "tessel::Row is defined in"),
    ("one_definition", "logic/query/Other.cpp", "namespace tessel {\nnamespace {\nint a;\n}\nclass Row final {\n};\n}\n",
     "tessel::Row is defined in"),
    ("one_definition", "logic/query/Other.cpp", "namespace tessel {\nclass Query::Place final : public A::B {\n};\n}\n",
     "tessel::Query::Place is defined in"),
    ("icons", "desktop/forms/b.ui", "<iconset>:/icons/b.svg</iconset>\n", "b.svg is not in"),
    ("icons", "desktop/icons.qrc", '<file alias="a.svg">icons/c.svg</file>\n', "no icons/c.svg"),
)


def make_tree(folder, files):
    for path, text in files.items():
        target = pathlib.Path(folder) / path
        target.parent.mkdir(parents=True, exist_ok=True)
        target.write_text(text)
    return Tree(pathlib.Path(folder))


def complaints(check, files):
    with tempfile.TemporaryDirectory() as folder:
        return check(make_tree(folder, files))


def accepts(check):
    return ["reports what is right: " + text for text in complaints(check, GOOD)]


def reports(check, path, text, expected):
    found = complaints(check, {**GOOD, path: text})
    if any(expected in complaint for complaint in found):
        return []
    return ["does not report %s; it says: %s" % (path, found or "nothing")]


def cases():
    """(name, body) of each case; a body returns a list of complaints."""
    for check in checks.ALL:
        yield check.__name__ + "_accepts_what_is_right", lambda check=check: accepts(check)
    for name, path, text, expected in BAD:
        check = getattr(checks, name)
        yield ("%s_reports_%s" % (name, path.replace("/", "_")),
               lambda check=check, path=path, text=text, expected=expected: reports(check, path, text, expected))
