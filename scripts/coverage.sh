#!/usr/bin/env bash
# Runs the suite of the coverage build, and tells which lines and branches it went through.
set -euo pipefail
cd "$(dirname "$0")/.."
build=$PWD/build/coverage

rm -rf "$build/profiles" "$build/report"
# Without the tests in which the program may write nothing, as it would say that it can't write its counts either.
LLVM_PROFILE_FILE="$build/profiles/%4m.profraw" \
  GTEST_FILTER=-Commands.ReadAProfileThatCannotBeWritten:Drive.FailsWhereTheRegistryCannotBeSaved \
  ctest --preset coverage
llvm-profdata merge -sparse "$build"/profiles/*.profraw -o "$build/suite.profdata"

options=(-instr-profile="$build/suite.profdata" -ignore-filename-regex='/(tests|fuzz)/|^/usr/|build/coverage/[^.]')
for object in "$build"/bin/*; do options+=(-object "$object"); done
llvm-cov show "${options[@]}" -format=html -output-dir="$build/report"
llvm-cov export "${options[@]}" -summary-only | scripts/coverage_table.py "$PWD"
