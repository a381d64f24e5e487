#!/usr/bin/env bash
# Uses the wizard for Windows to its end by Wine, once its dialog and once its loadable module, and holds the files that
# are left against those of the command line: converted files, backups, undo file, log. Then lets the session end in the
# middle of a run, which must stop and leave every source as it was.
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

# A project whose run takes so long that the session can end in the middle of it.
large=$WINEPREFIX/drive_c/Large
# The dollar sign belongs to a directive of Pascal.
# shellcheck disable=SC2016
make_large() {
  local count=1500 lines i
  rm -rf "$large"
  mkdir "$large"
  lines=$(for ((i = 0; i < 400; ++i)); do printf "  object Q%d: TQuery\r\n    SQL.Strings = (\r\n      'select %d')\r\n  end\r\n" $i $i; done)
  {
    printf 'program Large;\r\nuses\r\n'
    for ((i = 1; i < count; ++i)); do printf "  U%d in 'U%d.pas',\r\n" $i $i; done
    printf "  U%d in 'U%d.pas';\r\nbegin\r\nend.\r\n" $count $count
  } >"$large/Large.dpr"
  for ((i = 1; i <= count; ++i)); do
    printf 'unit U%d;\r\ninterface\r\ntype TF%d = class(TForm) Q0: TQuery; end;\r\nimplementation\r\n{$R *.dfm}\r\nend.\r\n' \
      $i $i >"$large/U$i.pas"
    printf 'object F%d: TF%d\r\n%s\r\nend\r\n' $i $i "$lines" >"$large/U$i.dfm"
  done
}
# Uses the wizard on the large project, and sets `status` to its exit status. The arguments are acts of usewizard while
# the run is in progress.
use_large() {
  wine "$programs/kvawizard.exe" 'C:\Large\Large.dpr' &
  local program=$!
  timeout 300 wine "$programs/usewizard.exe" "$title 1 of 5" "Next >" "$title 2 of 5" "Next >" \
    "$title 3 of 5" "Next >" "$title 4 of 5" "Next >" "$title 5 of 5" "Finish" \
    "BDE/IBX Migration Wizard" "Yes" "$@" "BDE/IBX Migration Wizard" "Close" >"$scratch/large.out" ||
    { cat "$scratch/large.out"; fail "a dialog did not come"; }
  status=0
  wait "$program" || status=$?
}
# Fails unless the dialogs have shown the line.
shown() {
  tr -d '\r' <"$scratch/large.out" | grep -qx "  $1" || { grep -v '[.]pas$' "$scratch/large.out"; fail "not shown: $1"; }
}
sources() { (cd "$large" && find . -maxdepth 1 -name '[UL]*' -type f -print0 | sort -z | xargs -0 sha256sum); }

make_large
sources >"$scratch/before"
use_large "BDE/IBX Migration Wizard" "!Stop"
[ "$status" -eq 130 ] || fail "the wizard has ended with $status after a stopped run"
shown "the session must not end"
shown "The run was stopped."
sources | cmp - "$scratch/before" || fail "a stopped run has changed sources"
[ ! -f "$large/RBackup/RExpert.reu" ] || fail "a stopped run has left an undo file"
# The same without the end of the session.
use_large
[ "$status" -eq 0 ] || fail "the wizard has ended with $status"
[ "$(sources | diff - "$scratch/before" | grep -c '^<')" -ge 3000 ] || fail "the run has not converted the project"
echo "wizard-windows: the end of the session stops a run"
