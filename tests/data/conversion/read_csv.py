"""Reads a CSV file with Python's own reader and prints each field in hexadecimal, one line a record.

usage: read_csv.py FILE DELIMITER
"""
import csv
import sys


def main():
    csv.field_size_limit(10**9)
    with open(sys.argv[1], encoding="utf-8", newline="") as file:
        for record in csv.reader(file, delimiter=sys.argv[2], lineterminator="\r\n"):
            print(" ".join(field.encode().hex() or "-" for field in record))


main()
