#!/usr/bin/env bash
# Builds the programs for Windows, in build/packages: kvamigrate-VERSION-win64.zip and kvamigrate-VERSION-win32.zip.
#
#   scripts/build-windows.sh [--no-archive] [win64|win32]...    by default both
#
# --no-archive only builds, in build/win64 and build/win32.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

sources=$PWD/build/windows/sources
packages=$PWD/build/packages

# fetch_source PACKAGE FOLDER: unpacks the source package. The machine's own package sources are asked for sources, too,
# in a configuration that only this call sees.
fetch_source() {
  local apt options file
  apt=$(mktemp -d)
  mkdir -p "$apt/sources" "$apt/lists/partial" "$apt/cache/archives/partial" "$apt/unpacked"
  for file in /etc/apt/sources.list.d/*.sources; do
    [ ! -f "$file" ] || sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$apt/sources/${file##*/}"
  done
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ ! -f "$file" ] || sed -nE 's/^deb(-src)?[[:space:]]/deb-src /p' "$file" >"$apt/sources/${file##*/}.list"
  done
  options=(-qq -o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$apt/sources"
    -o "Dir::State::Lists=$apt/lists" -o "Dir::Cache=$apt/cache" -o "APT::Sandbox::User=$(id -un)")
  if ! (apt-get "${options[@]}" update && cd "$apt/unpacked" && apt-get "${options[@]}" source --download-only "$1" &&
        dpkg-source --no-check -x ./*.dsc "$2") >"$apt/log" 2>&1 </dev/null; then
    cat "$apt/log" >&2
    rm -rf "$apt"
    return 1
  fi
  rm -rf "$apt"
}

# Puts the sources and headers of the libraries that have no package for MinGW into $sources.
gather_sources() {
  [ -f "$sources/complete" ] && return
  rm -rf "$sources"
  mkdir -p "$sources/include/unicode"
  cp -r /usr/include/nlohmann /usr/include/dtl "$sources/include"
  cp /usr/include/unicode/*.h "$sources/include/unicode"
  fetch_source pugixml "$sources/pugixml"
  touch "$sources/complete"
}

install_packages "${PACKAGES_PROGRAM[@]}" "${PACKAGES_WINDOWS[@]}" "${PACKAGES_PACKAGE[@]}"
gather_sources
with_archive=yes
[ "${1:-}" != --no-archive ] || { with_archive=no && shift; }
[ $# -gt 0 ] || set -- win64 win32
for preset in "$@"; do
  configure_quietly "$preset"  # each time, because a build for this machine brings the tests
  build_quietly "build/$preset" all
done
[ "$with_archive" = yes ] || exit 0

mkdir -p "$packages"
for preset in "$@"; do
  version=$(sed -nE 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "build/$preset/CMakeCache.txt")
  name=kvamigrate-$version-$preset
  folder=$packages/$name
  rm -rf "$folder" "$folder.zip"
  mkdir -p "$folder/licences"
  cp -r LICENSE examples "$folder"
  rm "$folder/examples/README.md"  # which is there as HTML, like the other documents
  scripts/html-documents.py "$folder"
  cp "build/$preset/cli/kvamigrate.exe" "build/$preset/cli/kvawizard.exe" "build/$preset/cli/kvaexpert.dll" "$folder"
  "$([ "$preset" = win64 ] && echo x86_64 || echo i686)-w64-mingw32-strip" "$folder"/*.exe "$folder"/*.dll
  for library in libpugixml-dev libz-mingw-w64-dev libdtl-dev nlohmann-json3-dev libicu-dev mingw-w64-common gcc-mingw-w64-base; do
    cp "/usr/share/doc/$library/copyright" "$folder/licences/$library"
  done
  (cd "$packages" && zip -qrX9 "$name.zip" "$name")
  rm -rf "$folder"
  ls -l "$folder.zip"
done
