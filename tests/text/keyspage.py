"""The check of the page of keys: every key that a form shows in a menu or a tool tip stands on it."""
import re
import xml.etree.ElementTree as xml

PAGE = "help/keyboard.html"
FORMS = "desktop/forms/"
NAME = r"(?:F\d+|[A-Z0-9.'=+-]|Up|Down|Left|Right|Home|End|Ins|Del|Enter|Esc|Space|Tab|PgUp|PgDown|PageUp|PageDown|Menu)"
KEY = re.compile(r"(?:(?:Ctrl|Shift|Alt)\+)*%s" % NAME)
IN_TIP = re.compile(r"\(([^()]*)\)")
CELL = re.compile(r"<tr><td>(.*?)</td>")
SHORT = {"PgUp": "PageUp", "PgDown": "PageDown", "Delete": "Del", "Insert": "Ins"}


def keys_in(text):
    """The keys of a list of them, each in one spelling; none where it is no such list."""
    names = [name.strip() for name in text.split(", ")]
    if not all(KEY.fullmatch(name) for name in names):
        return []
    return ["+".join(SHORT.get(part, part) for part in name.split("+")) for name in names]


def shown_keys(form):
    """(widget or command, key) of each key that the form shows."""
    for element in form.iter():
        for item in element.findall("property"):
            text = "".join(item.itertext()).strip()
            shown = []
            if item.get("name") == "shortcut":
                shown = [text]
            elif item.get("name") == "text" and "\t" in text:
                shown = [text.split("\t", 1)[1]]
            elif item.get("name") == "toolTip":
                shown = IN_TIP.findall(text)
            for keys in shown:
                for key in keys_in(keys):
                    yield element.get("name"), key


def keys_page(tree):
    page = tree.text(PAGE) if PAGE in tree.paths else ""
    known = {key for cell in CELL.findall(page) for key in keys_in(cell)}
    complaints = []
    for path in tree.paths:
        if path.startswith(FORMS) and path.endswith(".ui"):
            complaints += ["%s: %s shows %s, which is not on %s" % (path, name, key, PAGE)
                           for name, key in shown_keys(xml.fromstring(tree.text(path))) if key not in known]
    return complaints
