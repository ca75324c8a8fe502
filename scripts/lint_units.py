#!/usr/bin/env python3
"""Runs clang-tidy over the sources named on standard input.

Most of clang-tidy's time goes into the standard library's headers, so the sources of a folder are looked at in
units of several. Sources that name the same thing, each for itself, go into different units; a unit that still
doesn't compile as one is split.
"""

import concurrent.futures
import json
import os
import pathlib
import re
import shlex
import subprocess
import sys

BUILD = pathlib.Path("build/lint")
UNITS = BUILD / "units"
MOST_SOURCES = 14

# What a line that isn't indented declares: a constant, a type or a function of no class.
DECLARED = re.compile(
    r"^(?:(?:class|struct|union|enum(?: class)?) (\w+)"
    r"|using (\w+) ="
    r"|(?!namespace|using)[A-Za-z_][^(=;{]*?[ *&](\w+)(?:\[[^\]]*\])? ?[={;(])",
    re.M,
)
DEPENDS_ON_ORDER = re.compile(r"^(?:#define|using namespace)", re.M)
BROKEN = re.compile(r"^(.+?):\d+:\d+: error: .*\[clang-diagnostic-error\]", re.M)


def names_in(source):
    text = pathlib.Path(source).read_text()
    if DEPENDS_ON_ORDER.search(text):
        return None
    return {next(filter(None, match)) for match in DECLARED.findall(text)}


def units_of(sources):
    """Lists of sources of one folder, none too long, no name declared twice in any."""
    units = []
    for source in sources:
        names = names_in(source)
        if names is None:
            units.append(([source], None))
            continue
        for members, taken in units:
            fits = taken is not None and len(members) < MOST_SOURCES and not taken & names
            if fits and os.path.dirname(members[0]) == os.path.dirname(source):
                members.append(source)
                taken |= names
                break
        else:
            units.append(([source], names))
    return [members for members, _ in units]


def flags_by_folder():
    """All flags that the build gives to sources of a folder."""
    flags = {}
    for entry in json.loads((BUILD / "compile_commands.json").read_text()):
        words = shlex.split(entry["command"])
        known = flags.setdefault(os.path.dirname(os.path.relpath(entry["file"])), [])
        known += [word for word in words[1 : words.index("-o")] if word not in known]
    return flags


def flags_for(source, flags):
    folder = os.path.dirname(source)
    while folder not in flags:
        folder = os.path.dirname(folder)
    return flags[folder]


def lint(members, flags):
    """Gives what clang-tidy has to say of the sources, and whether it found fault."""
    # Under the folder's name, and with its own checks if it has any.
    folder = UNITS / os.path.dirname(members[0])
    unit = folder / f"{pathlib.Path(members[0]).stem}_and_{len(members) - 1}.cc"
    unit.write_text("".join(f'#include "{os.path.abspath(member)}"\n' for member in members))
    tidy = subprocess.run(
        ["clang-tidy", "--quiet", str(unit), "--", *flags_for(members[0], flags)],
        capture_output=True,
        text=True,
    )
    broken = {os.path.relpath(file) for file in BROKEN.findall(tidy.stdout)}
    if broken and len(members) > 1:
        named = [member for member in members if member in broken]
        others = [member for member in members if member not in broken]
        if not named or not others:
            named, others = members[::2], members[1::2]
        first, second = lint(named, flags), lint(others, flags)
        return first[0] + second[0], first[1] or second[1]
    return tidy.stdout, tidy.returncode != 0


def set_up(sources):
    for folder in {os.path.dirname(source) for source in sources}:
        (UNITS / folder).mkdir(parents=True, exist_ok=True)
        own = pathlib.Path(folder) / ".clang-tidy"
        if own.exists():
            (UNITS / own).write_text(own.read_text())
    (UNITS / ".clang-tidy").write_text("InheritParentConfig: true\nChecks: '-bugprone-suspicious-include'\n")


def main():
    sources = sys.stdin.read().split()
    set_up(sources)
    flags = flags_by_folder()
    units = units_of(sources)
    units.sort(key=lambda members: sum(os.path.getsize(member) for member in members), reverse=True)
    failed = False
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for report, has_findings in pool.map(lambda members: lint(members, flags), units):
            print(report, end="", flush=True)
            failed = failed or has_findings
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
