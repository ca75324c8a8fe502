#!/usr/bin/env bash
# clang-format and clang-tidy over all sources; any finding fails.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/sources.sh | xargs clang-format --dry-run -Werror

# The commands of the clang build, whose flags clang-tidy knows. The benchmarks aren't built there.
cmake --preset sanitize >/dev/null
scripts/sources.sh | grep '\.cc$' | grep -v '^bench/' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/sanitize --quiet 2>/dev/null
echo "lint: clean"
