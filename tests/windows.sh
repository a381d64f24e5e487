#!/usr/bin/env bash
# Tests the program for Windows by Wine. Runs the tests of all hosts and those of Windows. Then compares whole runs with
# the program of this machine: the same bytes in every file, backups, undo file and log included, the same output, and
# the same tree after the restore.
#
#   tests/windows.sh [BUILD [WINDOWS]]
#
# BUILD holds kvamigrate and kva_maketree; by default build/dev. WINDOWS holds kvamigrate.exe; by default build/win64,
# which scripts/build-windows.sh has made.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
project=$PWD
build=$(realpath "${1:-build/dev}")
windows=$(realpath "${2:-build/win64}")
scratch=$(mktemp -d)
export WINEPREFIX=$scratch/prefix WINEDEBUG=-all WINEDLLOVERRIDES='mscoree,mshtml=' DISPLAY=
trap 'wineserver -k 2>/dev/null || true; rm -rf "$scratch"' EXIT

fail() { echo "windows.sh: $*" >&2; exit 1; }

# Programs and modules need the libraries of the system alone.
system='ADVAPI32|COMCTL32|COMDLG32|GDI32|GDIPLUS|KERNEL32|msvcrt|OLE32|OLEACC|OLEAUT32|SHELL32|SHLWAPI|USER32|UXTHEME|VERSION'
for folder in "$project/build/win64" "$project/build/win32" "$windows"; do
  [ -d "$folder" ] || continue
  while IFS= read -r file; do
    case ${file##*/} in
      kvamigrate.exe | kvawizard.exe | kvaexpert.dll)  # an icon and a version
        resources=$(wrestool -l "$file" | sed -nE 's/^--type=(14|16) .*/\1/p' | sort -u | xargs)
        [ "$resources" = "14 16" ] || fail "$file has the resources $resources"
        ;;
    esac
    imports=$(x86_64-w64-mingw32-objdump -p "$file" | sed -nE 's/^\s*DLL Name: //p')
    [ -n "$imports" ] || fail "$file has no import table"
    foreign=$(grep -viE "^($system)\.dll$" <<<"$imports" || true)
    [ -z "$foreign" ] || fail "$file needs $foreign"
  done < <(find "$folder" \( -name 'kva*.exe' -o -name 'kva*.dll' \))
done

# The archives that scripts/build-windows.sh has made: every link of the documents leads somewhere, and all is there that
# is linked in.
for archive in "$project"/build/packages/kvamigrate-*-win??.zip; do
  [ -f "$archive" ] || continue
  folder=$scratch/$(basename "$archive" .zip)
  unzip -q "$archive" -d "$scratch"
  for file in LICENSE README.html docs/manual.html examples/bde/LendDesk.dproj kvaexpert.dll kvamigrate.exe kvawizard.exe \
    licences/{gcc-mingw-w64-base,libdtl-dev,libicu-dev,libpugixml-dev,libz-mingw-w64-dev,mingw-w64-common,nlohmann-json3-dev}; do
    [ -s "$folder/$file" ] || fail "$archive lacks $file"
  done
  (cd "$folder" && grep -roE '(href|src)="[^":#]+' --include='*.html' .) | while IFS= read -r link; do
    page=${link%%:*}
    [ -f "$folder/$(dirname "$page")/${link#*=\"}" ] || fail "$archive: $link leads nowhere"
  done
done

# The module has one export.
exports=$(x86_64-w64-mingw32-objdump -p "$windows/cli/kvaexpert.dll" | sed -nE '/^\[Ordinal\/Name Pointer\]/,/^$/s/^\s*\[ *[0-9]+\] //p')
[ "$exports" = INITWIZARD0001 ] || fail "kvaexpert.dll exports $exports"

# Without the front end that complains that there is no 32-bit Wine. The server stays between two programs.
PATH=$PATH:/usr/lib/wine
mkdir -p "$WINEPREFIX"
wineserver -p || fail "no server of Wine"
wineboot -i >/dev/null 2>&1 || fail "wineboot failed"

# A folder of this machine as the share of a server.
mkdir -p "$scratch/share" "$WINEPREFIX/dosdevices/unc/server"
ln -s "$scratch/share" "$WINEPREFIX/dosdevices/unc/server/share"

# Other programs' temporary folders would be reported.
mkdir "$scratch/temporary"
native() { TMPDIR=$scratch/temporary "$build/cli/kvamigrate" "$@"; }
foreign() { wine64 "$windows/cli/kvamigrate.exe" "$@"; }

# in_tree NAME COMMAND [ARGUMENT...]: runs the program in $scratch/work. Output and status go to NAME.txt beside it.
in_tree() {
  local name=$1 status=0
  shift
  (cd "$scratch/work" && "$@" >"$scratch/$name.out" 2>"$scratch/$name.err" </dev/null) || status=$?
  # The summary names the folder of the backups as the host does.
  { echo "status $status"; cat "$scratch/$name.out" "$scratch/$name.err"; } |
    sed -E '/^Backups: /{s/Z://; s|\\|/|g}' >"$scratch/$name.txt"
}

# snapshot NAME: keeps the tree. The times of the backups are those of the originals, to the unit of 100 ns.
snapshot() {
  rm -rf "${scratch:?}/$1"
  cp -a "$scratch/work/tree" "$scratch/$1"
  find "$scratch/$1" -name Wiz_Log.txt -exec sed -i -E 's/^Created at: [^\r]*/Created at: <time>/' {} +
  (cd "$scratch/$1" && find . -path '*/RBackup*' -name '*.~*' -printf '%P %TY-%Tm-%Td %TH:%TM:%TS\n' | sed -E 's/[0-9]{3}$//' | sort) >"$scratch/$1.times"
}

same() { diff -r "$scratch/$1" "$scratch/$2" >"$scratch/difference" || { head -n 40 "$scratch/difference"; fail "$3"; }; }

# compare TREE READONLY ARGUMENT...: runs both programs over a copy of TREE, and restores it.
runs=0
compare() {
  local source=$1 read_only=$2 program file
  shift 2
  for program in native foreign; do
    rm -rf "$scratch/work"
    mkdir "$scratch/work"
    cp -a "$source" "$scratch/work/tree"
    for file in $read_only; do chmod u-w "$scratch/work/tree/$file"; done
    in_tree "$program-run" "$program" replace "$@"
    snapshot "$program"
    for file in $read_only; do chmod u+w "$scratch/work/tree/$file"; done
    in_tree "$program-restore" "$program" restore "$(cd "$scratch/work" && find tree -name RExpert.reu | sed -n 1p)"
    snapshot "$program-restored"
  done
  same native-run.txt foreign-run.txt "the output of the run differs: $source"
  same native foreign "the tree after the run differs: $source"
  same native.times foreign.times "the times of the backups differ: $source"
  same native-restore.txt foreign-restore.txt "the output of the restore differs: $source"
  same native-restored foreign-restored "the tree after the restore differs: $source"
  runs=$((runs + 1))
}

# The tests of every layer in one process. They may write to drive C: and the registry, which are of the scratch prefix.
# A test that hangs ends the script.
[ -f "$windows/tests/kva_tests.exe" ] || fail "$windows was configured before a build for this machine"
begun=$SECONDS
for tests in kva_tests kva_memory_tests; do
  (cd "$scratch/temporary" && KVA_TEST_MACHINE=1 KVA_TEST_SHARE='\\server\share' TMP="Z:${scratch//\//\\}\\temporary" \
    timeout 900 wine64 "$windows/tests/$tests.exe" --gtest_brief=1 </dev/null) || fail "$tests failed"
done
echo "windows: the tests took $((SECONDS - begun)) s"
rm -rf "${scratch:?}/temporary"
mkdir "$scratch/temporary"

setting() { cat "$1" 2>/dev/null || true; }
for golden in tests/golden/*/; do
  source=$project/${golden}in
  [ ! -f "${golden}from" ] || source=$project/$(cat "${golden}from")
  arguments=(--mode "$(cat "${golden}mode")")
  if [ -f "${golden}project" ]; then
    arguments+=(--project "tree/$(cat "${golden}project")")
  else
    arguments+=(--folder tree --subfolders)
  fi
  [ ! -f "${golden}codepage" ] || arguments+=(--codepage "$(cat "${golden}codepage")")
  compare "$source" "$(setting "${golden}readonly")" "${arguments[@]}"
done

# Generated trees, and names that are no file names to older programs: devices, long paths, other scripts.
for mode in bde ibx; do
  options=(--seed 7 --units 60 --forms 60 --utf16 20)
  [ $mode = bde ] || options+=(--ibx)
  "$build/bench/kva_maketree" "$scratch/generated-$mode" "${options[@]}"
  unit=$(cd "$scratch/generated-$mode" && find . -name '*.pas' | sort | sed -n 1p)
  long=$scratch/generated-$mode/$(printf 'Folder-%060d/' 1 2 3 4 5)
  mkdir -p "$long"
  for name in con.pas AUX.pas "Тест.pas" "表示.pas" $'\u00E9.pas' $'e\u0301.pas'; do cp "$scratch/generated-$mode/$unit" "$scratch/generated-$mode/$name"; done
  cp "$scratch/generated-$mode/$unit" "$long/Long.pas"
  # A link to a folder, which no run walks into.
  mkdir "$scratch/elsewhere-$mode"
  cp "$scratch/generated-$mode/$unit" "$scratch/elsewhere-$mode/Linked.pas"
  ln -s "$scratch/elsewhere-$mode" "$scratch/generated-$mode/Link"
  compare "$scratch/generated-$mode" "" --mode "$mode" --folder tree --subfolders
  cmp -s "$scratch/generated-$mode/$unit" "$scratch/elsewhere-$mode/Linked.pas" || fail "a link to a folder was followed"
done

# A run on a network drive, and its restore.
cp -a examples/bde "$scratch/share/App"
rm -rf "$scratch/work/tree"
cp -a examples/bde "$scratch/work/tree"
in_tree native-run native replace -q --mode bde --folder tree --subfolders
in_tree network foreign replace -q --mode bde --folder '\\server\share\App' --subfolders
same native-run.txt network.txt "the output of the run on a network drive differs"
diff -r -x RExpert.reu -x Wiz_Log.txt "$scratch/work/tree" "$scratch/share/App" || fail "the tree on a network drive differs"
in_tree network foreign restore '\\server\share\App'
rm -r "$scratch/share/App/RBackup" "$scratch/share/App/Wiz_Log.txt"
diff -r examples/bde "$scratch/share/App" || fail "the restore on a network drive leaves other files"

# What is different by intention.
in_tree drive foreign replace --mode bde --folder tree --drive C=tree
[ "$(head -n 1 "$scratch/drive.txt")" = "status 2" ] || fail "--drive is taken"
echo "windows: $runs runs agree"
