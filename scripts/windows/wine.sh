#!/usr/bin/env bash
# Runs a Windows program: wine.sh PROGRAM arguments... Its Windows has a folder of its own.
export WINEPREFIX=${WINEPREFIX:-${MERIVANE_WINDOWS:-$HOME/.cache/merivane-windows}/wine}
export WINEDEBUG=${WINEDEBUG:--all}
export WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
if [ ! -e "$WINEPREFIX/system.reg" ]; then
  mkdir -p "$WINEPREFIX"
  wine winecfg -v win10 2> /dev/null  # what it takes itself for, otherwise, heeds no manifest
fi
exec wine "$@"
