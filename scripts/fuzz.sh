#!/usr/bin/env bash
# Runs every fuzz target for the seconds given, from its seeds; new inputs stay in build/fuzz. A line for each: how many
# runs a second, how many inputs it holds now, and the file that crashed it if one did. Fails if any crashed.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds=${1:-60}
failed=0

for target in build/fuzz/bin/*_fuzz; do
  name=$(basename "$target" _fuzz)
  found=build/fuzz/corpus/$name
  log=build/fuzz/$name.log
  mkdir -p "$found"
  verdict=clean
  "$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2048 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/$name-" "$found" "fuzz/corpus/$name" >"$log" 2>&1 || {
    verdict="FAILED: $(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1), log in $log"
    failed=1
  }
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log")
  printf '%-18s %8s runs/s %6d inputs  %s\n' \
    "$name" "${rate:-?}" "$(find "$found" "fuzz/corpus/$name" -type f | wc -l)" "$verdict"
done
exit "$failed"
