#!/usr/bin/env bash
# Installs what is missing, builds everything, and runs all tests: as released, and under the address and
# undefined-behaviour sanitizers. The last lines are those of the test runner.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")"
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

install_packages "${PACKAGES_PROGRAM[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_TESTS[@]}"
for preset in sanitize dev; do
  [ -f build/$preset/build.ninja ] || configure_quietly $preset
  echo "Building: $preset" >&2
  build_quietly build/$preset all
  echo "Testing: $preset" >&2
  ctest --test-dir build/$preset --output-on-failure --no-tests=error -j"$(nproc)"
done
