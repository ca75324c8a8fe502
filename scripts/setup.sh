#!/usr/bin/env bash
# Installs the Debian packages that are missing, and does nothing when none is.
set -euo pipefail

packages=(
  # To build
  g++ make cmake ninja-build binutils
  libcli11-dev libical-dev nlohmann-json3-dev libtomlplusplus-dev
  # To test and measure
  libgtest-dev libbenchmark-dev tzdata khal unrtf
  # To check
  clang clang-format clang-tidy libclang-rt-14-dev llvm python3
)

missing=()
for package in "${packages[@]}"; do
  status=$(dpkg-query -W -f '${Status}' "$package" 2>/dev/null || true)
  [[ $status == *"ok installed" ]] || missing+=("$package")
done
[[ ${#missing[@]} -eq 0 ]] && exit 0

echo "Installing: ${missing[*]}"
as_root=()
if [[ $(id -u) -ne 0 ]]; then
  as_root=(sudo)
fi
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
  apt-get install -qq -y --no-install-recommends "${missing[@]}" >/dev/null
