"""Reads every sheet of an XLSX file and prints its cells, one line a row: kind and value, texts in hexadecimal.

usage: read_xlsx.py FILE
"""
import datetime
import sys

import openpyxl
from openpyxl.utils.escape import unescape


def shown(value):
    if value is None:
        return "empty"
    if isinstance(value, bool):
        return "true" if value else "false"
    if isinstance(value, (int, float)):
        return "number:" + repr(float(value))
    if isinstance(value, (datetime.datetime, datetime.date, datetime.time)):
        return "moment:" + value.isoformat()
    return "text:" + unescape(value).encode("utf-8").hex()


def main():
    book = openpyxl.load_workbook(sys.argv[1])
    for sheet in book.worksheets:
        print(sheet.title, sheet.freeze_panes)
        for row in sheet.iter_rows():
            print(" ".join(shown(cell.value) for cell in row))


main()
