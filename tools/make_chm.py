"""Compiles the help book into a help file of the kind .chm, for help viewers of other makers.

usage: make_chm.py CHMCMD BOOK_FOLDER WORK_FOLDER OUTPUT

Contents, index and context numbers are those of book.xml. A context number leads to a whole page
here, not to a place in it, and each number to a page of its own: chmcmd knows no more.
"""
import pathlib
import shutil
import subprocess
import sys
import xml.etree.ElementTree as xml
from xml.sax.saxutils import quoteattr


def sitemap(name, page):
    return ('<li><object type="text/sitemap"><param name="Name" value=%s>'
            '<param name="Local" value=%s></object>\n' % (quoteattr(name), quoteattr(page)))


def contents(topics):
    """The topics as a list, and those below each as a list inside."""
    lines = "".join(sitemap(topic.get("title"), topic.get("page")) + contents(topic) for topic in topics)
    return "<ul>\n" + lines + "</ul>\n" if len(topics) else ""


def index(words):
    listed = sorted(words, key=lambda word: word.get("text").lower())
    return "<ul>\n" + "".join(sitemap(word.get("text"), word.get("page")) for word in listed) + "</ul>\n"


def topic_pages(book):
    """(context number, page) each with a page of its own: a second number of a page needs a copy of it."""
    pages = {}
    for context in book.iter("context"):
        page = context.get("page").split("#")[0]
        number = context.get("number")
        pages[number] = page if page not in pages.values() else "topic%s-%s" % (number, page)
    return list(pages.items())


def project(book, pages, output):
    contexts = topic_pages(book)
    return "\n".join(
        ["[OPTIONS]", "Compatibility=1.1 or later", "Compiled file=" + output, "Contents file=book.hhc",
         "Index file=book.hhk", "Default topic=" + book.get("start"), "Title=" + book.get("title"),
         "Full-text search=Yes", "Binary TOC=No", "Binary Index=Yes", "Language=0x409", "", "[FILES]"] + pages +
        ["", "[MAP]"] + ["#define IDH_%s %s" % (number, number) for number, _ in contexts] +
        ["", "[ALIAS]"] + ["IDH_%s=%s" % context for context in contexts] + [""])


def main():
    chmcmd, source, work, output = sys.argv[1], *map(pathlib.Path, sys.argv[2:5])
    shutil.rmtree(work, ignore_errors=True)
    shutil.copytree(source, work)
    book = xml.parse(work / "book.xml").getroot()
    for _, page in topic_pages(book):
        if not (work / page).exists():
            shutil.copyfile(work / page.split("-", 1)[1], work / page)
    pages = sorted(path.name for path in work.glob("*.html")) + ["book.css"] + \
        sorted(path.name for path in work.glob("*.png"))
    (work / "book.hhc").write_text("<html><body>\n" + contents(book.find("contents")) + "</body></html>\n")
    (work / "book.hhk").write_text("<html><body>\n" + index(book.find("index")) + "</body></html>\n")
    (work / "Tessel.hhp").write_text(project(book, pages, "Tessel.chm"))
    done = subprocess.run([chmcmd, "Tessel.hhp"], cwd=work, capture_output=True, text=True)
    made = work / "Tessel.chm"
    if not made.exists() or made.stat().st_size == 0:
        sys.exit("chmcmd made no help file:\n" + done.stdout + done.stderr)
    shutil.copyfile(made, output)


main()
