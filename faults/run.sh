#!/usr/bin/env bash
# Tries faults on the program as it is released: kills, power cuts, failing calls, full disks, second runs,
# edits, lack of memory. Prints a table of the points tried and how many were harmful. Exit status 1 if
# anything was.
#
#   faults/run.sh [--quick] [OPTION...]      --quick tries every 8th point; options: faults.py --help
#   PRESET=dev faults/run.sh                 the program of that preset's build instead of "release"
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

install_packages "${PACKAGES_PROGRAM[@]}" python3
build=build/${PRESET:=release}
[ -f "$build/build.ninja" ] || configure_quietly "$PRESET"
build_quietly "$build" kvamigrate
injector=$PWD/$build/libfaults.so
g++ -std=c++20 -O2 -Wall -Wextra -Werror -fPIC -shared -o "$injector" faults/*.cpp -ldl

options=(--program "$PWD/$build/cli/kvamigrate" --injector "$injector" --harmful "$build/harmful-faults.txt")
for argument in "$@"; do
  if [ "$argument" = --quick ]; then options+=(--every 8); else options+=("$argument"); fi
done
# The small disks are mounted where no one else sees them.
private=()
for how in "unshare -m" "unshare -rm"; do
  if [ ${#private[@]} -eq 0 ] && $how true 2>/dev/null; then read -ra private <<<"$how"; fi
done
exec "${private[@]}" python3 -B faults/faults.py "${options[@]}"
