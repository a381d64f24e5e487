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

# run ROOT COMMAND...: converts an example application and takes it back; its tree has to be as before. The command is the
# program, for which ROOT is the root folder.
run() {
  local app=$scratch/app name=${*: -1}
  rm -rf "$1$app"
  mkdir -p "$1$scratch"
  cp -r "$project/examples/bde" "$1$app"
  "${@:2}" replace --mode bde --folder "$app" --subfolders >/dev/null 2>&1 || fail "$name replace failed"
  cmp -s "$project/examples/bde/DataMod.pas" "$1$app/DataMod.pas" && fail "$name replace changed nothing"
  "${@:2}" restore "$app/RBackup/RExpert.reu" >/dev/null 2>&1 || fail "$name restore failed"
  rm -r "$1$app/RBackup" "$1$app/Wiz_Log.txt"
  diff -r "$project/examples/bde" "$1$app" || fail "$name restore left other files"
}

# An empty root with a package database, whose programs run with the libraries of this machine.
root=$scratch/root
mkdir -p "$root"/var/lib/dpkg/{info,updates} "$root/var/log"
touch "$root"/var/lib/dpkg/{status,available}
in_root() { dpkg --root="$root" --force-not-root --force-depends --log="$scratch/dpkg.log" "$@" >"$scratch/out" 2>&1 || { cat "$scratch/out" >&2; fail "dpkg $*"; }; }
listing() { (cd "$root" && find . -path ./var -prune -o ! -type d -print | sort); }

in_root --install "$packages"/*.deb
installed=$(listing)
run "" "$root/usr/bin/kvamigrate"
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
# A root with the program, a folder for temporary files, and nothing else.
bare=$scratch/bare
mkdir -p "$bare/tmp"
cp "$program" "$bare"
if [ "$(id -u)" -eq 0 ]; then
  TMPDIR=/tmp run "$bare" chroot "$bare" /kvamigrate
else
  TMPDIR=/tmp run "$bare" unshare --map-root-user --root="$bare" /kvamigrate
fi
echo "packages: installed, run and removed"
