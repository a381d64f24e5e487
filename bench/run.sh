#!/usr/bin/env bash
# Builds the program and its benchmarks, runs them, and writes docs/benchmarks.md.
#
#   ./bench/run.sh [--quick] [--only GROUP]...
#
# --only    measures one group and replaces its table: tree, dense, mechanism, size, form, grammar, conversion, scanner,
#           window, disk
# --quick   shows in a few minutes whether all of it runs; the tables are printed and not written
#
# The build folder is build/bench, or the one that KVA_BUILD names. Exit status 1: a target was missed.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

install_packages "${PACKAGES_PROGRAM[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_TESTS[@]}" perl
build=${KVA_BUILD:-build/bench}
[ -f "$build/build.ninja" ] ||
  cmake -G Ninja -S . -B "$build" -DCMAKE_BUILD_TYPE=Release -DKVA_BENCH=ON -DKVA_DESKTOP=ON >/dev/null
echo "Building: $build" >&2
build_quietly "$build" all
exec python3 bench/measure.py "$build" "$@"
