#!/usr/bin/env bash
# Installs the packages of build/packages into an empty root, runs what is in them, and removes them again.
#
#   tests/packages.sh    after scripts/package.sh
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
project=$PWD
packages=$PWD/build/packages
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

fail() { echo "packages.sh: $*" >&2; exit 1; }

# run PROGRAM: converts an example application and takes it back; its tree has to be as before.
run() {
  rm -rf "$scratch/app"
  cp -r "$project/examples/bde" "$scratch/app"
  "$1" replace --mode bde --folder "$scratch/app" --subfolders >/dev/null 2>&1 || fail "$1 replace failed"
  cmp -s "$project/examples/bde/DataMod.pas" "$scratch/app/DataMod.pas" && fail "$1 replace changed nothing"
  "$1" restore "$scratch/app/RBackup/RExpert.reu" >/dev/null 2>&1 || fail "$1 restore failed"
  rm -r "$scratch/app/RBackup" "$scratch/app/Wiz_Log.txt"
  diff -r "$project/examples/bde" "$scratch/app" || fail "$1 restore left other files"
}

# An empty root with a package database, whose programs run with the libraries of this machine.
root=$scratch/root
mkdir -p "$root"/var/lib/dpkg/{info,updates} "$root/var/log"
touch "$root"/var/lib/dpkg/{status,available}
in_root() { dpkg --root="$root" --force-not-root --force-depends --log="$scratch/dpkg.log" "$@" >"$scratch/out" 2>&1 || { cat "$scratch/out" >&2; fail "dpkg $*"; }; }
listing() { (cd "$root" && find . -path ./var -prune -o ! -type d -print | sort); }

in_root --install "$packages"/*.deb
installed=$(listing)
run "$root/usr/bin/kvamigrate"
QT_QPA_PLATFORM=offscreen "$root/usr/bin/kvawizard" --help >/dev/null 2>&1 || fail "kvawizard --help failed"
for file in usr/share/man/man1/kvamigrate.1.gz usr/share/man/man1/kvawizard.1.gz usr/share/applications/kvawizard.desktop \
  usr/share/icons/hicolor/scalable/apps/kvawizard.svg usr/share/bash-completion/completions/kvamigrate \
  usr/share/doc/kvamigrate/copyright usr/share/doc/kvamigrate/changelog.Debian.gz; do
  grep -qx "./$file" <<<"$installed" || fail "$file is not installed"
done
in_root --purge kvamigrate kvawizard
[ -z "$(listing)" ] || fail "removing the packages left $(listing)"

tar -C "$scratch" -xzf "$packages"/kvamigrate-*-linux-x86_64.tar.gz
program=$(echo "$scratch"/kvamigrate-*/kvamigrate)
readelf -l "$program" | grep -q INTERP && fail "$program needs a loader"
run "$program"
echo "packages: installed, run and removed"
