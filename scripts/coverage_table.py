#!/usr/bin/env python3
"""Prints what of the sources the suite ran through, by folder: coverage_table.py SOURCES < summary of llvm-cov."""

import collections
import json
import os
import sys

MOST_FILES = 10


class Count:
    def __init__(self):
        self.covered = {"lines": 0, "branches": 0}
        self.all = {"lines": 0, "branches": 0}

    def add(self, summary):
        for kind in self.all:
            self.all[kind] += summary[kind]["count"]
            self.covered[kind] += summary[kind]["covered"]

    def text(self, kind):
        if self.all[kind] == 0:
            return f"{'none':>19}"
        return f"{self.covered[kind]:>6}/{self.all[kind]:<6}{100 * self.covered[kind] / self.all[kind]:5.1f}%"


def main():
    # A header can be there under several spellings of its path; the fullest count is the one that stands.
    files = {}
    for file in json.load(sys.stdin)["data"][0]["files"]:
        name = os.path.relpath(file["filename"], sys.argv[1])
        summary = file["summary"]
        if name not in files or summary["lines"]["covered"] > files[name]["lines"]["covered"]:
            files[name] = summary

    by_folder = collections.defaultdict(Count)
    total = Count()
    uncovered = []
    for name, summary in files.items():
        by_folder[os.path.dirname(name)].add(summary)
        total.add(summary)
        uncovered.append((summary["lines"]["count"] - summary["lines"]["covered"], name))

    print(f"\n{'':<24}{'lines':>18}{'branches':>22}")
    for folder in sorted(by_folder):
        print(f"{folder:<24}{by_folder[folder].text('lines')}   {by_folder[folder].text('branches')}")
    print(f"{'total':<24}{total.text('lines')}   {total.text('branches')}")

    print("\nMost lines that nothing runs through:")
    for count, name in sorted(uncovered, reverse=True)[:MOST_FILES]:
        print(f"{count:>6}  {name}")
    print("\nLine by line: build/coverage/report/index.html")


if __name__ == "__main__":
    main()
