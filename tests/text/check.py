#!/usr/bin/env python3
"""Checks of the source text that no compiler makes. Each check is one test case.

    check.py [--self-test] [--json FILE] [ROOT]

--self-test also proves, on small trees made for it, that each check accepts what is right and
reports what is wrong. --json writes a report in the form of GoogleTest's.
"""
import argparse
import json
import pathlib
import sys

sys.path.insert(0, str(pathlib.Path(__file__).parent))
import checks
import selftest
from tree import Tree

MARKS = {"passed": "  ok  ", "failed": " FAIL ", "skipped": " skip "}


def run(name, body):
    """One case: (name, result, messages)."""
    try:
        messages = body()
    except checks.Skipped as reason:
        return name, "skipped", [str(reason)]
    return name, "failed" if messages else "passed", messages


def show(case):
    name, result, messages = case
    print("[%s] %s" % (MARKS[result], name))
    for message in messages:
        print("         " + message)


def report(suites):
    """The cases in the form of GoogleTest's report, as far as tests/summary.py reads it."""
    def entry(case):
        name, result, messages = case
        found = {"name": name, "result": "SKIPPED" if result == "skipped" else "COMPLETED"}
        if result == "failed":
            found["failures"] = [{"failure": text} for text in messages]
        return found
    return {"testsuites": [{"name": name, "testsuite": [entry(case) for case in cases]}
                           for name, cases in suites.items()]}


def main():
    parser = argparse.ArgumentParser(description="Check the source text.")
    parser.add_argument("--self-test", action="store_true", help="also prove that each check can fail")
    parser.add_argument("--json", type=pathlib.Path, help="write a report to this file")
    parser.add_argument("root", nargs="?", type=pathlib.Path, default=pathlib.Path(__file__).resolve().parents[2])
    arguments = parser.parse_args()

    tree = Tree(arguments.root)
    suites = {"Text": [run(check.__name__, lambda: check(tree)) for check in checks.ALL]}
    if arguments.self_test:
        suites["TextSelfTest"] = [run(name, body) for name, body in selftest.cases()]
    cases = [case for suite in suites.values() for case in suite]
    for case in cases:
        show(case)
    if arguments.json:
        arguments.json.write_text(json.dumps(report(suites), indent=1))
    sys.exit(1 if any(result == "failed" for _, result, _ in cases) else 0)


if __name__ == "__main__":
    main()
