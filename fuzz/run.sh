#!/usr/bin/env bash
# Builds the fuzz targets with libFuzzer and the address and undefined-behaviour sanitizers, and runs each for
# some seconds, from a corpus of the examples and the golden folders. Prints executions and coverage of each.
# Exit status 1 if a target finds an input that breaks one of its properties. That input is kept.
#
#   fuzz/run.sh SECONDS [TARGET...]
#
# SEED=N sets the seed of the random numbers. The default is 1, so that the outcome of a check does not depend on
# luck; 0 takes a new seed each time, for long runs that search.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

seconds=${1:?Usage: fuzz/run.sh SECONDS [TARGET...]}
shift
install_packages "${PACKAGES_PROGRAM[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_TESTS[@]}"
build=$PWD/build/sanitize
[ -f "$build/build.ninja" ] || configure_quietly sanitize
targets=("$@")
[ ${#targets[@]} -gt 0 ] || mapfile -t targets < <(basename -s .cpp fuzz/*Fuzz.cpp)
build_quietly "$build" "${targets[@]}"
export LLVM_PROFILE_FILE=/dev/null
python3 -B fuzz/seeds.py "$build/seeds"

# run_target NAME: prints a line of the table, and on failure the end of the log. Earlier finds are in the
# corpus of the build folder, and are tried first.
run_target() {
  local name=$1 log=$build/$1.log status=0 found
  mkdir -p "$build/corpus/$name" "$build/found"
  "$build/fuzz/$name" -max_total_time="$seconds" -seed="${SEED:-1}" -max_len=4096 -timeout=25 -print_final_stats=1 \
    -artifact_prefix="$build/found/$name-" \
    "$build/corpus/$name" "$build/seeds/$name" >"$log" 2>&1 </dev/null || status=1
  found=$(grep -o 'cov: [0-9]* ft: [0-9]* corp: [0-9]*' "$log" | tail -1 | awk '{print $2, $4, $6}')
  read -r edges features corpus <<<"${found:-0 0 0}"
  printf '| %-16s | %10s | %8s | %8s | %6s |\n' "$name" \
    "$(sed -n 's/^stat::number_of_executed_units: *//p' "$log")" "$edges" "$features" "$corpus"
  [ $status -eq 0 ] || { echo "$name: $log"; tail -40 "$log"; }
  return $status
}
export -f run_target
export build seconds

printf '| %-16s | %10s | %8s | %8s | %6s |\n' target executions edges features corpus
printf '|%s|%s|%s|%s|%s|\n' ------------------ ------------ ---------- ---------- --------
printf '%s\n' "${targets[@]}" | xargs -P "$(nproc)" -I{} bash -c 'run_target {}'
