#!/usr/bin/env bash
# Runs every fuzz target for the seconds given, from its seeds; new inputs stay in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}

for target in build/fuzz/bin/*_fuzz; do
  name=$(basename "$target" _fuzz)
  found=build/fuzz/corpus/$name
  mkdir -p "$found"
  echo "== $name for $seconds seconds"
  "$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/$name-" "$found" "fuzz/corpus/$name" 2>&1 | tail -n 12
done
