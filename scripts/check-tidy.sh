#!/usr/bin/env bash
# Checks the sources with clang-tidy, by .clang-tidy. Exit status 1: something was found.
#
#   scripts/check-tidy.sh [FOLDER]...    without an argument: everything
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

build=build/lint
[ -f $build/build.ninja ] || configure_quietly lint
# What the build makes and checked sources include.
build_quietly $build kva_header_examples

# Only files that the build compiles here: others have no compile commands.
compiled=$(sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' $build/compile_commands.json)
git ls-files -- "${@:-.}" | grep '\.cpp$' | sed "s|^|$PWD/|" | grep -xFf - <(echo "$compiled") |
  xargs -r -P"$(nproc)" -n4 clang-tidy -p $build --quiet 2>/dev/null | { grep -v '^[0-9]* warnings generated' || true; }
