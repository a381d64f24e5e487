#!/usr/bin/env bash
# Checks the sources with clang-tidy, by .clang-tidy. Exit status 1: something was found.
#
#   scripts/check-tidy.sh [--windows] [FOLDER]...    without a folder: everything that the build compiles
#
# --windows checks what the build for 64-bit Windows compiles; scripts/build-windows.sh goes before it.
#
# The sources of a target are checked a few at a time, as the preset `lint` compiles them, because most of the time
# goes into the headers that they share.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

commands=()
if [ "${1:-}" = --windows ]; then
  shift
  build=build/win64
  # clang does not find the C++ library of MinGW by itself, and lacks one option of its compiler.
  library=$(dirname "$(x86_64-w64-mingw32-g++-posix -print-libgcc-file-name)")/include/c++
  commands=(--extra-arg="-isystem$library" --extra-arg="-isystem$library/x86_64-w64-mingw32"
    --extra-arg=-Wno-unknown-warning-option)
else
  build=build/lint
  [ -f $build/build.ninja ] || configure_quietly lint
  # What the build makes and checked sources include.
  build_quietly $build kva_header_examples
fi
mkdir -p $build/tidy
sed 's/ -fno-keep-inline-dllexport//' $build/compile_commands.json >$build/tidy/compile_commands.json
# The rules of a folder hold for what CMake puts together from it.
git ls-files -- '*/.clang-tidy' | while read -r rules; do [ ! -d "$build/${rules%/*}" ] || cp "$rules" "$build/$rules"; done

# The programs without a mechanism are copies of sources that are checked already.
[ $# -gt 0 ] || mapfile -t all < <(git ls-tree -d --name-only HEAD)
folders=$(printf '%s|' "${@:-${all[@]}}")
sed -n 's/^ *"file": "\(.*\)",\{0,1\}$/\1/p' $build/compile_commands.json |
  grep -E "^$PWD/((${folders%|})/|$build/(${folders%|})/.*/Unity/)" | grep -vE '/kvamigrate_without_[a-z]*\.dir/' |
  xargs -r -P"$(nproc)" -n1 clang-tidy -p $build/tidy --quiet --checks=-bugprone-suspicious-include "${commands[@]}" 2>/dev/null | { grep -v '^[0-9]* warnings generated' || true; }
