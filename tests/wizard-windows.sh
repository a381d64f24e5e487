#!/usr/bin/env bash
# Uses the wizard for Windows to its end by Wine, once its dialog and once its loadable module, and holds the files that
# are left against those of the command line: converted files, backups, undo file, log.
#
#   tests/wizard-windows.sh [WINDOWS]
#
# WINDOWS is the build of the programs; by default build/win64, which scripts/build-windows.sh has made.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
windows=$(realpath "${1:-build/win64}")
cmake --build "$windows" --target usewizard useexpert >/dev/null
programs=$windows/cli
scratch=$(mktemp -d)
export WINEPREFIX=$scratch/prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml='
number=$((100 + $$ % 900))
Xvfb ":$number" -screen 0 1280x1024x24 >/dev/null 2>&1 &
screen=$!
export DISPLAY=:$number
trap 'wineserver -k 2>/dev/null || true; kill "$screen"; rm -rf "$scratch"' EXIT
fail() { echo "wizard-windows.sh: $*" >&2; exit 1; }

wine wineboot -i >/dev/null 2>&1 || fail "wineboot failed"
app=$WINEPREFIX/drive_c/App
title="KORVA Migration Wizard - Step"

# run NAME COMMAND [ARGUMENT...]: runs the command over a new copy of the example, and keeps the tree.
run() {
  local name=$1
  shift
  rm -rf "$app"
  cp -r examples/bde "$app"
  "$@" >"$scratch/$name.out" 2>"$scratch/$name.err" || { cat "$scratch/$name.out" "$scratch/$name.err" >&2; fail "$name failed"; }
  find "$app" -name Wiz_Log.txt -exec sed -i -E 's/^Created at: [^\r]*/Created at: <time>/' {} +
  cp -r "$app" "$scratch/$name"
}

# Called by its name.
# shellcheck disable=SC2317
use_dialog() {
  wine "$programs/kvawizard.exe" 'C:\App\LendDesk.dproj' &
  local program=$!
  timeout 300 wine "$programs/usewizard.exe" "$title 1 of 5" "Next >" "$title 2 of 5" "Next >" \
    "$title 3 of 5" "Deselect All" "$title 3 of 5" "Next >" "Information" "OK" "$title 3 of 5" "Select All" \
    "$title 3 of 5" "Next >" "$title 4 of 5" "Next >" "$title 5 of 5" "Finish" \
    "BDE/IBX Migration Wizard" "Yes" "BDE/IBX Migration Wizard" "Close" || return
  wait "$program"
}

run command wine "$programs/kvamigrate.exe" replace --quiet --mode bde --project 'C:\App\LendDesk.dproj'
run dialog use_dialog
run module wine "$programs/useexpert.exe" "$programs/kvaexpert.dll" 'C:\App\LendDesk.dproj'

[ -f "$scratch/command/RBackup/RExpert.reu" ] || fail "the run has left no undo file"
for name in dialog module; do
  diff -r "$scratch/command" "$scratch/$name" >"$scratch/difference" ||
    { head -n 40 "$scratch/difference"; fail "the files differ: $name"; }
done

# The outcome is the last message of both; the dialog has details, too.
outcome="Replace procedure was performed sucessfully."
said() { tr -d '\r' <"$scratch/$1.out"; }
[ "$(said module | tail -n 1)" = "BDE/IBX Migration Wizard: $outcome" ] ||
  { said module; fail "the module has said something else"; }
said dialog | tac | sed '/^\[/q' | grep -qxF "  $outcome" || { said dialog; fail "the dialogs have said something else"; }
echo "wizard-windows: dialog and module agree with the command line"
