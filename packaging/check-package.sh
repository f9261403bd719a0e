#!/usr/bin/env bash
# Installs the build into a scratch root, and the Debian package where cpack makes one, and runs a
# translation from each: check-package.sh BUILD_FOLDER SAMPLE.
set -euo pipefail
here=$(realpath "$(dirname "$0")")
build=$(realpath "$1")
sample=$(realpath "$2")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# The desktop program comes up, without a screen, and stays until it is stopped.
open_window() {
  [ -e "$build/bin/merivane" ] || return 0
  local status=0
  [ -e "$(dirname "$(realpath "$1/usr/bin/merivane")")/merivane.chm" ] ||
    { echo "no help in $1" >&2; exit 1; }
  QT_QPA_PLATFORM=offscreen timeout 5 "$1/usr/bin/merivane" 2> /dev/null || status=$?
  [ "$status" -eq 124 ] || { echo "merivane in $1 ended with $status" >&2; exit 1; }
}

translate() {
  local root=$1
  [ -e "$(dirname "$(realpath "$root/usr/bin/merivane-batch")")/samples/onboarding.txt" ] ||
    { echo "no samples in $root" >&2; exit 1; }
  for file in bin/merivane-batch share/man/man1/merivane-batch.1 \
    share/applications/merivane.desktop share/mime/packages/merivane.xml \
    share/icons/hicolor/scalable/apps/merivane.svg \
    share/metainfo/example.vorn.merivane.metainfo.xml \
    share/doc/merivane/merivane.spdx share/bash-completion/completions/merivane-batch; do
    [ -e "$root/usr/$file" ] || { echo "missing in $root: usr/$file" >&2; exit 1; }
  done
  grep -q '^Relationship: SPDXRef-merivane DEPENDS_ON SPDXRef-sqlite3$' \
    "$root/usr/share/doc/merivane/merivane.spdx"
  rm -f "$scratch"/plan.*
  "$root/usr/bin/merivane-batch" to-project "$sample" --database "$scratch/plan.mdb" \
    --mpx "$scratch/plan.mpx"
  grep -q '^70,1,1,' "$scratch/plan.mpx"
  local home
  home=$(dirname "$(realpath "$root/usr/bin/merivane-batch")")
  [ -e "$home/merivane-layout.so" ] || { echo "no layout in $root" >&2; exit 1; }
  rm -f "$scratch/picture.png"
  "$root/usr/bin/merivane-batch" draw "$sample" --output "$scratch/picture.png"
  [ -s "$scratch/picture.png" ] || { echo "no picture from $root" >&2; exit 1; }
}

# What software centres show: valid, and each picture is one of docs/pictures in the size that is told.
check_page() {
  local share=$1/usr/share
  desktop-file-validate "$share/applications/merivane.desktop"
  appstreamcli validate --no-net "$share/metainfo/example.vorn.merivane.metainfo.xml" > "$scratch/page" ||
    { cat "$scratch/page" >&2; exit 1; }
  sed -n 's/.*<image .*width="\(.*\)" height="\(.*\)">.*\/\(.*\)<.*/\3 \1x\2/p' \
    "$share/metainfo/example.vorn.merivane.metainfo.xml" > "$scratch/told"
  [ -s "$scratch/told" ] || { echo "no picture in the page of $1" >&2; exit 1; }
  while read -r picture size; do
    [ "$(identify -format %wx%h "$here/../docs/pictures/$picture")" = "$size" ] ||
      { echo "docs/pictures/$picture is not $size" >&2; exit 1; }
  done < "$scratch/told"
}

DESTDIR=$scratch/installed cmake --install "$build" --prefix /usr > /dev/null
translate "$scratch/installed"
check_page "$scratch/installed"
open_window "$scratch/installed"

(cd "$scratch" && cpack --config "$build/CPackConfig.cmake" -B "$scratch/packages" > /dev/null)
dpkg-deb -x "$scratch"/packages/*.deb "$scratch/unpacked"
dpkg-deb -f "$scratch"/packages/*.deb Depends > "$scratch/depends"
for library in libgvc6 libcgraph6 librsvg2-2 libcairo2 libfontconfig1; do
  grep -qw -e "$library" "$scratch/depends" || { echo "no dependency on $library" >&2; exit 1; }
done
translate "$scratch/unpacked"
open_window "$scratch/unpacked"
