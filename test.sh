#!/usr/bin/env bash
# Installs what is missing, builds, and runs the tests. The last lines are those of the test runner.
#
#   ./test.sh [LEG]...
#
# Legs: sanitize (clang++, address and undefined-behaviour sanitizers), threads (clang++, thread sanitizer, the tests of
# whole runs), dev (g++, as released). Without an argument: sanitize and dev.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

# The tests that the thread sanitizer sees: whole runs and what their threads share.
whole_runs='^(.*/)?(Golden|Run|StrictRun|FilesAhead|WorkQueue|Replace|Wizard|Expert|CommandLine)'

run_leg() {
  local preset=$1 targets=(all) selection=()
  if [ "$preset" = threads ]; then
    targets=(kva_tests)
    selection=(-R "$whole_runs")
  fi
  [ -f "build/$preset/build.ninja" ] || configure_quietly "$preset"
  echo "Building: $preset" >&2
  build_quietly "build/$preset" "${targets[@]}"
  echo "Testing: $preset" >&2
  # One profile for each program, into which its processes merge their counts.
  rm -rf "build/$preset/profiles"
  # A module that was unloaded leaves the name of its profile behind, which is a leak to the sanitizer.
  LLVM_PROFILE_FILE=$PWD/build/$preset/profiles/%4m.profraw \
    LSAN_OPTIONS=suppressions=$PWD/scripts/leaks.txt:print_suppressions=0 \
    ctest --test-dir "build/$preset" --output-on-failure --no-tests=error -j"$(nproc)" "${selection[@]}"
}

install_packages "${PACKAGES_PROGRAM[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_TESTS[@]}"
[ $# -gt 0 ] || set -- sanitize dev
for leg in "$@"; do
  case $leg in
    sanitize | threads | dev) run_leg "$leg" ;;
    *) echo "test.sh: no such leg: $leg" >&2 && exit 2 ;;
  esac
done
