#!/usr/bin/env bash
# Runs `kvamigrate ARGS`. Installs what is missing and builds the program on first use.
set -euo pipefail
project=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=scripts/packages.sh
. "$project/scripts/packages.sh"

preset=release
packages=("${PACKAGES_PROGRAM[@]}")
if [ "${1:-}" = wizard ]; then
  preset=desktop
  packages+=("${PACKAGES_DESKTOP[@]}")
fi
build=$project/build/$preset
program=$build/cli/kvamigrate
(
  cd "$project"
  [ -x "$program" ] || echo "Building kvamigrate; this happens once." >&2
  install_packages "${packages[@]}"
  [ -f "$build/build.ninja" ] || configure_quietly "$preset"
  build_quietly "$build" all
)
exec "$program" "$@"
