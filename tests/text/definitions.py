"""Where types of C++ are defined at the level of a namespace. The compiler sees one file at a time:
two types of one name that differ are joined to one by the linker, and the program then takes the
one for the other."""
import re

TOKEN = re.compile(
    r"\bnamespace\s+(?P<namespace>[\w:]*)\s*\{"
    r"|\b(?:enum\s+(?:class|struct)|enum|class|struct|union)\s+(?:\[\[[^]]*\]\]\s*)?(?P<type>\w+(?:::\w+)*)"
    r"(?:\s+final)?\s*(?::[^;{(]*)?\{"
    r"|(?P<open>\{)|(?P<close>\})")


def definitions(code):
    """(offset, full name) of each class, struct, union and enum that `code`, a file without its comments,
    defines in a namespace; none of those in an unnamed namespace, within a type or a function."""
    scopes, found = [], []
    for token in TOKEN.finditer(code):
        if token["close"]:
            if scopes:
                scopes.pop()
        elif token["namespace"] is not None:
            scopes.append(token["namespace"] or None)
        else:
            if token["type"] and all(scopes):
                found.append((token.start(), "::".join(scopes + [token["type"]])))
            scopes.append(None)
    return found


def repeated(files):
    """Complaints about names that several of the files define. `files`: (path, code without comments)."""
    places, complaints = {}, []
    for path, code in files:
        for offset, name in definitions(code):
            place = "%s:%d" % (path, code.count("\n", 0, offset) + 1)
            if name in places:
                complaints.append("%s: %s is defined in %s too" % (place, name, places[name]))
            else:
                places[name] = place
    return complaints
