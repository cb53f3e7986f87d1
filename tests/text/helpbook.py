"""The check of the help book: every place it names is there, and every number the program uses leads to one."""
import os
import re
import xml.etree.ElementTree as xml

BOOK = "help/book.xml"
LIST = "platform/desktop/help.qrc"
CONTEXT = re.compile(r"[cC]ontext\w*\s*=\s*(\d{3,})")
LINK = re.compile(r'(?:href|src)="([^"]*)"')
PLACE = re.compile(r'\bid="([^"]+)"')


def places(tree):
    """Every page, and every place in it as page#place."""
    found = set()
    for path in tree.paths:
        if path.startswith("help/") and path != BOOK:
            page = path[len("help/"):]
            found.add(page)
            found.update(page + "#" + name for name in PLACE.findall(tree.text(path)))
    return found


def link_complaints(tree, known):
    for path in tree.paths:
        if path.startswith("help/") and path.endswith(".html"):
            page = os.path.basename(path)
            for target in LINK.findall(tree.text(path)):
                if (page + target if target.startswith("#") else target) not in known:
                    yield "%s: there is no %s" % (path, target)


def code_contexts(tree, folders):
    return {int(number): path for path in tree.code_paths(*folders)
            for number in CONTEXT.findall(tree.code(path))}


def help_book(tree, folders):
    if BOOK not in tree.paths:
        return [BOOK + " is missing"]
    known = places(tree)
    book = xml.fromstring(tree.text(BOOK))
    named = [book.get("start")] + [entry.get("page") for entry in book.iter() if entry.get("page")]
    complaints = ["%s: there is no %s" % (BOOK, page) for page in named if page not in known]
    complaints += link_complaints(tree, known)
    numbers = {int(entry.get("number")) for entry in book.iter("context")}
    complaints += ["%s: the help has no topic for %d" % (path, number)
                   for number, path in sorted(code_contexts(tree, folders).items()) if number not in numbers]
    forms = {entry.get("name") for entry in book.iter("form")}
    complaints += ["%s: the help has no topic for the form" % path for path in tree.paths
                   if path.endswith(".ui") and os.path.basename(path)[:-3] not in forms]
    shown = {entry.get("page").split("#")[0] for entry in book.iter("topic")}
    listed = tree.text(LIST) or ""
    for path in tree.paths:
        page = os.path.basename(path)
        if path.startswith("help/") and ">../../%s<" % path not in listed:
            complaints.append("%s does not list %s" % (LIST, path))
        if path.startswith("help/") and path.endswith(".html") and page not in shown:
            complaints.append("%s: the contents lack %s" % (BOOK, page))
    return complaints
