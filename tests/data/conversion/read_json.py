"""Reads JSON with Python's own reader and prints each value, one line a record: its kind, and the text of a string or
the digits of a number in hexadecimal.

usage: read_json.py FILE array|lines KEY...
"""
import json
import sys


class Number(str):
    """The digits of a number as they stand."""


def shown(value):
    if value is None or isinstance(value, bool):
        return json.dumps(value)
    kind = "number" if isinstance(value, Number) else "text"
    return kind + ":" + (value.encode().hex() or "-")


def main():
    reader = {"parse_float": Number, "parse_int": Number}
    with open(sys.argv[1], encoding="utf-8", newline="") as file:
        if sys.argv[2] == "array":
            records = json.load(file, **reader)
        else:
            records = [json.loads(line, **reader) for line in file.read().rstrip("\n").split("\n")]
    for record in records:
        print(" ".join(shown(record[key]) for key in sys.argv[3:]))


main()
