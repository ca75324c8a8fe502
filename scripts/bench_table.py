#!/usr/bin/env python3
"""Runs the benchmarks and prints one table of them, beside what each is held against.

Each measure is taken by a process of its own, as the heap that others leave in pieces slows the large ones, and after a
warm-up, as a process pays once for each page of its memory. Times are CPU times, of the whole or, where a program counts
items, of one.

  bench_table.py FOLDER [SECONDS]     the programs' folder, and how long to measure at least
"""

import json
import pathlib
import re
import subprocess
import sys

# What a measure is held against, its sizes or cases aside, and the most that it may take of that where a limit was set.
# Several are added up.
REFERENCES = {
    "calendar BM_LoadWalkSave": (["BM_LibicalParseWalkWrite"], 0.1),
    "calendar BM_LoadSave": (["BM_PlainLoadSave"], 3.5),
    "calltask BM_OpenWalkClose": (["BM_LibicalParseWalkWrite"], None),
    "cardfile BM_OpenAndWalk": (["BM_ReferencePlainLoad"], None),
    "cardfile BM_Save": (["BM_ReferencePlainWrite"], None),
    "cardfile BM_SaveOutOfOrder": (["BM_ReferencePlainWrite", "BM_ReferenceStableSort"], None),
    "event BM_Occurrences": (["BM_LibicalDates"], 1 / 6),
    "recurrence BM_Expand": (["BM_Libical"], 0.1),
    "timeplace BM_BrokenTimeOf": (["BM_Machine_gmtime"], None),
    "timeplace BM_PlainSeconds": (["BM_Machine_timegm"], None),
    "timeplace BM_SecondsToLocal": (["BM_Machine_localtime"], None),
    "timeplace BM_LocalToSeconds": (["BM_Machine_mktime"], None),
}

# How much longer an item may take at the larger size.
GROWTH_LIMITS = {"calendar BM_LoadSave": 1.7, "event": 1.25}

WARM_UP = 0.2  # seconds

UNITS = (("s ", 1e9), ("ms", 1e6), ("us", 1e3), ("ns", 1))
HEADING = ("measure", "size", "time", "held against", "its time", "ratio", "limit", "growth", "limit")
WIDTHS = (35, 7, 8, 23, 8, 6, 5, 6, 5)
PREFIXES = re.compile("^(BM_)?(Reference|Machine_)?")


def names_of(program):
    listed = subprocess.run([program, "--benchmark_list_tests"], capture_output=True, text=True, check=True)
    return listed.stdout.split()


def measure(program, name, seconds):
    """CPU nanoseconds of a run, or of an item where those are counted."""
    options = ["--benchmark_format=json", f"--benchmark_min_warmup_time={WARM_UP}"]
    options.append(f"--benchmark_filter=^{re.escape(name)}$")
    if seconds:
        options.append(f"--benchmark_min_time={seconds}")
    run = subprocess.run([program, *options], capture_output=True, text=True, check=True)
    result = json.loads(run.stdout)["benchmarks"][0]
    if "items_per_second" in result:
        return 1e9 / result["items_per_second"], True
    return result["cpu_time"] * {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[result["time_unit"]], False


def split(name):
    """A measure's family, its case and its size."""
    family, *rest = name.split("/")
    cases = [word for word in rest if not word.isdigit()]
    sizes = [int(word) for word in rest if word.isdigit()]
    return family, "/".join(cases), sizes[0] if sizes else None


def references_of(program, name, times):
    """The names that a measure is held against, of the same case and size."""
    family, case, size = split(name)
    families, limit = REFERENCES.get(f"{program} {family}", ([], None))
    found = []
    for wanted in families:
        for other in times:
            other_family, other_case, other_size = split(other)
            if other_family == wanted and other_size == size and other_case.startswith(case):
                found.append(other)
                break
    return found, limit


def growth_of(program, name, times, per_item):
    """How much longer an item takes than at the smallest size of the measure."""
    family, case, size = split(name)
    if size is None or size < 100:
        return None, None
    sizes = [split(other)[2] for other in times if split(other)[:2] == (family, case)]
    smallest = min(sizes)
    if smallest == size:
        return None, None
    before = times[name.replace(f"/{size}", f"/{smallest}")]
    growth = times[name] / before / (1 if per_item else size / smallest)
    return growth, GROWTH_LIMITS.get(f"{program} {family}", GROWTH_LIMITS.get(program))


def time_text(nanoseconds):
    for unit, length in UNITS:
        if nanoseconds >= length:
            break
    return f"{nanoseconds / length:.3g} {unit}" if nanoseconds < 1000 * length else f"{nanoseconds / length:.0f} {unit}"


def ratio_text(value, limit):
    if value is None:
        return ""
    return f"{value:.2f}" + ("!" if limit is not None and value > limit else " ")


def line(cells):
    left = (0, 3)
    words = [f"{cell:<{width}}" if i in left else f"{cell:>{width}}" for i, (cell, width) in enumerate(zip(cells, WIDTHS))]
    return words[0] + "".join(("  " if i in left else " ") + word for i, word in enumerate(words[1:], 1))


def rows_of(program, times, per_item):
    held_against = {other for name in times for other in references_of(program, name, times)[0]}
    for name in times:
        if name in held_against:
            continue
        family, case, size = split(name)
        references, limit = references_of(program, name, times)
        reference = sum(times[other] for other in references) if references else None
        growth, growth_limit = growth_of(program, name, times, per_item[name])
        yield (
            f"{program} {PREFIXES.sub('', family)}" + (f" {case}" if case else ""),
            str(size) if size is not None else "",
            time_text(times[name]),
            " + ".join(PREFIXES.sub("", split(other)[0]) for other in references),
            time_text(reference) if references else "",
            ratio_text(times[name] / reference if references else None, limit),
            f"{limit:.2f}" if limit else "",
            ratio_text(growth, growth_limit),
            f"{growth_limit:.2f}" if growth is not None and growth_limit else "",
        )


def main():
    folder = pathlib.Path(sys.argv[1])
    seconds = sys.argv[2] if len(sys.argv) > 2 else ""
    print(line(HEADING))
    for path in sorted(folder.glob("*_bench")):
        taken = {name: measure(path, name, seconds) for name in names_of(path)}
        times = {name: time for name, (time, _) in taken.items()}
        per_item = {name: is_item for name, (_, is_item) in taken.items()}
        for row in rows_of(path.name.removesuffix("_bench"), times, per_item):
            print(line(row).rstrip(), flush=True)
    print("\nTimes are CPU times, of an item where a program counts them. Ratio: time to that of what it is held against.")
    print("Growth: time of an item to that at the smallest size. An exclamation mark: over the limit.")


if __name__ == "__main__":
    main()
