"""Reads the cells of an HTML table as a browser shows their text and prints each in hexadecimal, one line a row.

usage: read_html.py FILE
"""
import sys
from html.parser import HTMLParser


class Cells(HTMLParser):
    """Line ends of the source count for nothing beside a <br>; a no-break space shows as a blank."""

    def __init__(self):
        super().__init__()
        self.rows = []
        self.cell = None

    def handle_starttag(self, tag, attrs):
        if tag == "tr":
            self.rows.append([])
        elif tag in ("td", "th"):
            self.cell = ""
        elif tag == "br" and self.cell is not None:
            self.cell += "\n"

    def handle_endtag(self, tag):
        if tag in ("td", "th"):
            self.rows[-1].append(self.cell)
            self.cell = None

    def handle_data(self, data):
        if self.cell is not None:
            self.cell += data.replace("\r\n", "").replace("\u00a0", " ")


def main():
    with open(sys.argv[1], encoding="utf-8", newline="") as file:
        reader = Cells()
        reader.feed(file.read())
    for row in reader.rows:
        print(" ".join(cell.encode().hex() or "-" for cell in row))


main()
