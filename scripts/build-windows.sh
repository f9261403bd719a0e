#!/usr/bin/env bash
# Builds the Windows programs with the cross compiler: build-windows.sh [--test|--all]
#   (nothing)  merivane-batch.exe and the programs that work for it, in build/windows/bin
#   --test     and runs the tests that need no window, under Wine
#   --all      and merivane.exe with Qt, its picture, the zip and the setup program
# The libraries are made once, in a folder outside the tree: MERIVANE_WINDOWS, or
# ~/.cache/merivane-windows. Qt among them takes half an hour.
set -euo pipefail
cd "$(dirname "$0")/.."
what=${1:-}
case $what in
  "" | --test | --all) ;;
  *) echo "usage: scripts/build-windows.sh [--test|--all]" >&2; exit 2 ;;
esac
export MERIVANE_WINDOWS=${MERIVANE_WINDOWS:-$HOME/.cache/merivane-windows}
scripts/install-packages.sh scripts/packages.txt scripts/packages-windows.txt
qt=()
[ "$what" != --all ] || qt=(--qt)
scripts/windows/libraries.sh "$MERIVANE_WINDOWS" "${qt[@]}"

# One Windows, of this tree alone, stays up for all programs that are run.
export WINEPREFIX=$PWD/build/windows/wine
mkdir -p "$WINEPREFIX"
WINEDEBUG=-all wineserver -p || true  # one may be up already
# Its services start with the first program and would keep a pipe of ctest open, which then waits for them.
scripts/windows/wine.sh cmd.exe /c exit < /dev/null > /dev/null 2>&1 || true
trap 'WINEDEBUG=-all wineserver -k || true' EXIT

desktop=OFF
[ "$what" != --all ] || desktop=ON
testing=ON
[ -n "$what" ] || testing=OFF
cmake --preset windows -DMERIVANE_DESKTOP=$desktop -DBUILD_TESTING=$testing > /dev/null
cmake --build --preset windows -- --quiet
ls -l build/windows/bin/*.exe | awk '{print $5, $9}' | grep -v test_

if [ -n "$what" ]; then
  ctest --preset windows -j "$(nproc)"
  scripts/windows/check-programs.sh build/windows/bin
fi
if [ "$what" = --all ]; then
  scripts/windows/window-picture.sh build/windows/bin build/windows/pictures
  scripts/windows/package.sh build/windows out/windows
  scripts/windows/check-package.sh out/windows
fi
