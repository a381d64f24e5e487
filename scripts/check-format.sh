#!/usr/bin/env bash
# Whether every source file is laid out as clang-format does it. With --fix, lays it out.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
mode=(--dry-run --Werror)
[ "${1:-}" = --fix ] && mode=(-i)
git ls-files -z -- '*.cpp' '*.h' | xargs -0 clang-format "${mode[@]}"
