#!/usr/bin/env bash
# Which lines no test reaches: build/coverage.txt, file by file, from what the tests of the leg `sanitize` recorded.
# Prints the shares of each folder.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

build=build/sanitize
ls $build/profiles/*.profraw >/dev/null 2>&1 || { echo "coverage.sh: no records; run ./test.sh sanitize first." >&2; exit 2; }
llvm-profdata merge -sparse -o $build/tests.profdata $build/profiles/*.profraw
mapfile -t programs < <(find $build -type f \( -path "$build/cli/kva*" -o -path "$build/tests/kva_*tests" -o -name '*.so' \) -perm -u+x)
llvm-cov export -format=lcov -instr-profile=$build/tests.profdata "${programs[@]/#/-object=}" \
  -ignore-filename-regex='/(build|tests|bench|fuzz)/|^/usr/' 2>/dev/null >$build/coverage.lcov
exec python3 scripts/coverage.py $build/coverage.lcov build/coverage.txt
