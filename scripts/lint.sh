#!/usr/bin/env bash
# clang-format and clang-tidy over all sources; any finding fails.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/sources.sh | xargs clang-format --dry-run -Werror

# What is not built by the default preset has no compile command there.
scripts/sources.sh | grep '\.cc$' | grep -v '^bench/' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/default --quiet 2>/dev/null
echo "lint: clean"
