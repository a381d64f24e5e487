#!/usr/bin/env bash
# Makes the packages, in build/packages: two for Debian, and an archive with the program for any x86-64 Linux.
#
#   scripts/package.sh [BUILD]    BUILD is a release build with the windows; by default build/desktop, which is made
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/packages.sh
. scripts/packages.sh

build=${1:-build/desktop}
packages=$PWD/build/packages
max_static_bytes=$((5 * 1024 * 1024))

install_packages "${PACKAGES_PROGRAM[@]}" "${PACKAGES_DESKTOP[@]}" "${PACKAGES_PACKAGE[@]}"
[ -f "$build/build.ninja" ] || configure_quietly desktop
build_quietly "$build" all kvamigrate_static
mkdir -p "$packages"
rm -rf "$packages"/*.deb "$packages"/*.tar.gz

# The packages for Debian.
(cd "$build" && cpack -B "$packages" >"$packages/cpack.log" 2>&1) || { cat "$packages/cpack.log" >&2; exit 1; }
rm -rf "$packages"/_CPack_Packages "$packages/cpack.log"
lintian --fail-on error "$packages"/*.deb

# The archive, with the licences of the libraries that are linked in.
program=$build/static/kvamigrate_static
bytes=$(stat -c %s "$program")
[ "$bytes" -le "$max_static_bytes" ] || { echo "package.sh: $program has $bytes bytes" >&2; exit 1; }
version=$("$program" --version)
name=kvamigrate-${version##* }-linux-x86_64
folder=$packages/$name
mkdir -p "$folder/licences" "$folder/completions"
cp "$program" "$folder/kvamigrate"
cp -r LICENSE examples "$folder"
rm "$folder/examples/README.md"  # which is there as HTML, like the other documents
scripts/html-documents.py "$folder"
cp "$build/cli/kvamigrate.1" "$folder"
cp "$build"/cli/{kvamigrate.bash,_kvamigrate,kvamigrate.fish} "$folder/completions"
for library in libicu-dev libpugixml-dev zlib1g-dev libdtl-dev libc6-dev libstdc++-12-dev; do
  cp "/usr/share/doc/$library/copyright" "$folder/licences/$library"
done
tar -C "$packages" --owner=0 --group=0 -czf "$folder.tar.gz" "$name"
rm -rf "$folder"
ls -l "$packages"
