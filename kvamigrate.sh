#!/usr/bin/env bash
# Runs `kvamigrate ARGS`. Builds the program on first use and after a change of its sources, and installs the packages
# that the build needs.
set -euo pipefail
project=${BASH_SOURCE[0]%/*}
[ "$project" != "${BASH_SOURCE[0]}" ] || project=.

preset=release
[ "${1:-}" != wizard ] || preset=desktop
build=$project/build/$preset
program=$build/cli/kvamigrate

# Succeeds if no source file and no folder of sources has changed since the last build began. Takes a few milliseconds,
# which a call of the build system does not.
is_up_to_date() {
  [ -x "$program" ] && [ -e "$build/built" ] || return 1
  local changed
  changed=$(find "$project"/[!.]* \( -path "$project/build" -o -path "$project/tests" -o -path "$project/docs" \
    -o -path "$project/examples" -o -path "$project/bench" -o -path "$project/fuzz" \) -prune \
    -o -newer "$build/built" -print -quit)
  [ -z "$changed" ]
}

# Shows the build's progress on a terminal, and nothing elsewhere unless it fails. Standard output is the program's.
build_program() (
  cd "$project"
  # shellcheck source=scripts/packages.sh
  . scripts/packages.sh
  packages=("${PACKAGES_PROGRAM[@]}")
  [ $preset = release ] || packages+=("${PACKAGES_DESKTOP[@]}")
  install_packages "${packages[@]}"
  first=
  [ -x "build/$preset/cli/kvamigrate" ] || first=yes
  [ -z "$first" ] || echo "Building kvamigrate in build/$preset; this happens once." >&2
  [ -f "build/$preset/build.ninja" ] || configure_quietly "$preset"
  touch "build/$preset/built.new"
  if [ -t 2 ]; then
    cmake --build "build/$preset" >&2
  else
    build_quietly "build/$preset" all
  fi
  mv "build/$preset/built.new" "build/$preset/built"
  [ -z "$first" ] || cat >&2 <<END
The program is $PWD/build/$preset/cli/kvamigrate.
To have it on the path:  sudo cmake --install build/$preset    (or with --prefix ~/.local)
END
)

is_up_to_date || build_program
exec "$program" "$@"
