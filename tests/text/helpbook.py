"""The check of the help book: every place it names is there, and every number the program uses leads to one."""
import os
import re
import xml.etree.ElementTree as xml

BOOK = "help/book.xml"
LIST = "desktop/help.qrc"
# A number by its name, or written where one is passed on: to the help, to a window, to a text window.
CONTEXT = re.compile(r"""[cC]ontext\w*\s*[={(]\s*(\d+)
                     |\b(?:ShowHelpTopic|SetHelpContext)\s*\(\s*(\d+)
                     |\bHelpMsgBox\s*\([^;]*,\s*(\d+)\s*\)\s*;
                     |\bGetText\s*\([^,;]*,\s*(\d+)
                     |\b(?:ShowText|ViewText)\s*\([^;{]*\{\s*(\d+)
                     |\bTextViewOptions\s*\w*\s*\{\s*(\d+)""", re.X)
NO_CONTEXT = 0
LINK = re.compile(r'(?:href|src)="([^"]*)"')
PLACE = re.compile(r'\bid="([^"]+)"')


def places(tree):
    """Every page, and every place in it as page#place."""
    found = set()
    for path in tree.paths:
        if path.startswith("help/") and path != BOOK:
            page = path[len("help/"):]
            found.add(page)
            found.update(page + "#" + name for name in PLACE.findall(tree.text(path) or ""))
    return found


def link_complaints(tree, known):
    for path in tree.paths:
        if path.startswith("help/") and path.endswith(".html"):
            page = os.path.basename(path)
            for target in LINK.findall(tree.text(path)):
                if (page + target if target.startswith("#") else target) not in known:
                    yield "%s: there is no %s" % (path, target)


def code_contexts(tree, folders):
    """A file of each number that the code uses."""
    found = {int("".join(groups)): path for path in tree.code_paths(*folders)
             for groups in CONTEXT.findall(tree.code(path))}
    found.pop(NO_CONTEXT, None)
    return found


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
        if path.startswith("help/") and ">../%s<" % path not in listed:
            complaints.append("%s does not list %s" % (LIST, path))
        if path.startswith("help/") and path.endswith(".html") and page not in shown:
            complaints.append("%s: the contents lack %s" % (BOOK, page))
    return complaints
