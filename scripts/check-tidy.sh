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
# Sources that the build generates, and that checked ones include.
mapfile -t generated < <(ninja -C $build -t targets all | sed -n 's/^\(.*\.\(moc\|h\|example\)\): CUSTOM_COMMAND$/\1/p')
[ ${#generated[@]} -eq 0 ] || build_quietly $build "${generated[@]}"

# Only files that the build compiles here: others have no compile commands.
compiled=$(sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' $build/compile_commands.json)
git ls-files -- "${@:-.}" | grep '\.cpp$' | sed "s|^|$PWD/|" | grep -xFf - <(echo "$compiled") |
  xargs -r -P"$(nproc)" -n4 clang-tidy -p $build --quiet 2>/dev/null | { grep -v '^[0-9]* warnings generated' || true; }
