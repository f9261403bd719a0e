#!/usr/bin/env bash
# Starts merivane.exe under Wine on a screen of its own, translates a sample through the first dialog,
# opens the second, exports from the workbench, and takes pictures: window-picture.sh BIN-FOLDER PICTURES-FOLDER
set -euo pipefail
if [ -z "${MERIVANE_SCREEN:-}" ]; then
  exec env MERIVANE_SCREEN=1 xvfb-run -a -s "-screen 0 1280x900x24" "$0" "$@"
fi
bin=$(realpath "$1")
pictures=$(realpath -m "$2")
cd "$(dirname "$0")/../.."
mkdir -p "$pictures"
scratch=$(mktemp -d)
wait_for() {  # SECONDS COMMAND...
  local left=$(($1 * 5))
  shift
  until "$@" > /dev/null 2>&1; do
    left=$((left - 1))
    [ $left -gt 0 ] || return 1
    sleep 0.2
  done
}
picture() {
  sleep 1
  import -window root "$pictures/$1.png"
}
fail() {
  picture failed
  echo "window-picture: FAILED $*, see $pictures/failed.png" >&2
  exit 1
}
# Wine tells heights of its letters that leave the boxes of a form empty; Qt's own engine does not
# ask it.
scripts/windows/wine.sh "$bin/merivane.exe" -platform windows:fontengine=freetype > "$scratch/log" 2>&1 &
program=$!
trap 'kill $program 2> /dev/null || true; rm -rf "$scratch"' EXIT

window() { xdotool search --onlyvisible --name '^Merivane: '; }
wait_for 60 window || fail "no window"
sleep 3  # the splash goes by itself
keys() { xdotool key --delay 200 "$@"; }
# A path of this system as Windows sees it.
write() { xdotool type --delay 20 "Z:${1//\//\\}"; }
open_menu() {
  xdotool mousemove --window "$(window | head -1)" 20 8 click 1
  sleep 1
  keys "$1"
  sleep 1
}

open_menu v
write "$PWD/samples/onboarding.txt"
keys Tab Tab Tab Tab Tab space  # to the button behind the database's box
sleep 3
picture choosing
write "$scratch/plan.mdb"
keys Return
wait_for 20 test -s "$scratch/plan.mdb" || fail "the database was not made"
picture celvar-to-project
keys Tab Tab Return  # to "OK"
rows() { scripts/windows/wine.sh "$bin/merivane-batch.exe" projects "$scratch/plan.mdb" | grep -q '5 tasks'; }
wait_for 30 rows || fail "the sample was not translated"
picture written
open_menu p
picture project-to-celvar
! cmp -s "$pictures/written.png" "$pictures/project-to-celvar.png" || fail "no second dialog"
keys Escape
keys ctrl+o
sleep 3
write "$PWD/samples/festival.txt"
keys Return
sleep 5
picture workbench
for ending in pdf png; do  # drawn by a second start of the program, without a window
  keys ctrl+e
  sleep 3
  write "$scratch/diagram.$ending"
  keys Return
  wait_for 30 test -s "$scratch/diagram.$ending" || fail "no $ending was written"
  sleep 1
done
[ "$(head -c 4 "$scratch/diagram.pdf")" = %PDF ] && identify "$scratch/diagram.png" > /dev/null ||
  fail "what was exported is no picture"
cp "$scratch/diagram.png" "$pictures/exported.png"
keys ctrl+F4
sleep 2
open_menu e
wait_for 20 test ! -d "/proc/$program" || fail "the program does not end"
for name in choosing celvar-to-project written project-to-celvar workbench exported; do
  [ -s "$pictures/$name.png" ] || fail "no picture $name"
done
echo "window-picture: ok, in $pictures"
