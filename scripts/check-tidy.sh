#!/usr/bin/env bash
# Checks the sources with clang-tidy, by .clang-tidy. Exit status 1: something was found.
#
#   scripts/check-tidy.sh [FOLDER]...    without an argument: everything that the build compiles on this host
#
# The sources of a target are checked a few at a time, as the preset `lint` compiles them, because most of the time
# goes into the headers that they share.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

build=build/lint
[ -f $build/build.ninja ] || configure_quietly lint
# What the build makes and checked sources include.
build_quietly $build kva_header_examples
# The rules of a folder hold for what CMake puts together from it.
git ls-files -- '*/.clang-tidy' | while read -r rules; do cp "$rules" "$build/$rules"; done

# The programs without a mechanism are copies of sources that are checked already.
folders=$(printf '%s|' "${@:-[^/]*}")
sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' $build/compile_commands.json |
  grep -E "^$PWD/((${folders%|})/|$build/(${folders%|})/.*/Unity/)" | grep -vE '/kvamigrate_without_[a-z]*\.dir/' |
  xargs -r -P"$(nproc)" -n1 clang-tidy -p $build --quiet --checks=-bugprone-suspicious-include 2>/dev/null | { grep -v '^[0-9]* warnings generated' || true; }
