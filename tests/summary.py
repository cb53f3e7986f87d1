#!/usr/bin/env python3
"""Counts the test cases of a run, by ring. The last line is "N passed, N failed, N skipped".

    summary.py FOLDER RING...

For each ring FOLDER holds <ring>.json (GoogleTest's report; missing if the binary crashed),
<ring>.log (its output) and <ring>.exit (its exit status). Anything but a clean report of at least
one case and exit status 0 counts as a failure.
"""
import json
import pathlib
import sys


def case_result(case):
    if case.get("failures"):
        return "failed"
    if case.get("result") == "SKIPPED" or case.get("status") == "NOTRUN":
        return "skipped"
    return "passed"


def count_report(report):
    """Numbers of passed, failed and skipped cases, and the names of the failed ones."""
    counts = {"passed": 0, "failed": 0, "skipped": 0}
    failed = []
    for suite in report.get("testsuites", []):
        for case in suite.get("testsuite", []):
            result = case_result(case)
            counts[result] += 1
            if result == "failed":
                failed.append("%s.%s" % (suite["name"], case["name"]))
    return counts, failed


def count_ring(folder, ring):
    """As count_report, with one failure more for a crash, an odd exit status or an empty run."""
    status = int((folder / (ring + ".exit")).read_text())
    try:
        counts, failed = count_report(json.loads((folder / (ring + ".json")).read_text()))
    except (OSError, ValueError):
        return {"passed": 0, "failed": 1, "skipped": 0}, ["no report (exit status %d)" % status]
    if status != 0 and not failed:
        failed.append("exit status %d" % status)
        counts["failed"] += 1
    if sum(counts.values()) == 0:
        failed.append("no case ran")
        counts["failed"] += 1
    return counts, failed


def line(counts):
    return "%(passed)d passed, %(failed)d failed, %(skipped)d skipped" % counts


def main():
    folder, rings = pathlib.Path(sys.argv[1]), sys.argv[2:]
    total = {"passed": 0, "failed": 0, "skipped": 0}
    print()
    for ring in rings:
        counts, failed = count_ring(folder, ring)
        print("%-8s %s" % (ring, line(counts)))
        for name in failed:
            print("         failed: " + name)
        for result, number in counts.items():
            total[result] += number
    print(line(total))
    sys.exit(1 if total["failed"] or not total["passed"] else 0)


if __name__ == "__main__":
    main()
