#!/usr/bin/env bash
# Lists all C++ sources, one a line, from the project's folder.
set -euo pipefail
cd "$(dirname "$0")/.."
find base platform framework timeplace calendar calltask cardfile memo options plugin host tests bench fuzz \
  \( -name '*.h' -o -name '*.cc' \) | sort
