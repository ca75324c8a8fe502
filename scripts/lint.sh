#!/usr/bin/env bash
# clang-format and clang-tidy over all sources; any finding fails, and is told.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/sources.sh | xargs clang-format --dry-run -Werror

cmake --preset lint >/dev/null
scripts/sources.sh | grep '\.cc$' | scripts/lint_units.py
echo "lint: clean"
