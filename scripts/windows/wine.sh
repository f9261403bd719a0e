#!/usr/bin/env bash
# Runs a Windows program: wine.sh PROGRAM arguments... Its Windows is in WINEPREFIX, or else in a
# folder of its own.
export WINEPREFIX=${WINEPREFIX:-${MERIVANE_WINDOWS:-$HOME/.cache/merivane-windows}/wine}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
if [ ! -e "$WINEPREFIX/is-windows-10" ]; then
  mkdir -p "$WINEPREFIX"
  (
    flock 9
    # What it takes itself for, otherwise, heeds no manifest.
    [ -e "$WINEPREFIX/is-windows-10" ] || wine winecfg -v win10 2> /dev/null
    touch "$WINEPREFIX/is-windows-10"
  ) 9> "$WINEPREFIX/lock"
fi
# One start in a thousand or so ends at once, before the program runs: with status 1 and not a word. No program is
# through in that time.
readonly kMicroseconds=50000
begin=${EPOCHREALTIME/[.,]/}
status=0
wine "$@" || status=$?
[ "$status" != 1 ] || [ $((${EPOCHREALTIME/[.,]/} - begin)) -ge $kMicroseconds ] || exec wine "$@"
exit "$status"
