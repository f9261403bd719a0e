#!/usr/bin/env bash
# Compiles the topics: make-help.sh HELP_FOLDER PICTURES_FOLDER WORK_FOLDER TARGET.
# The compiler takes one context number for a file, so each number gets a copy of its topic.
set -euo pipefail
help=$1 pictures=$2 work=$3 target=$4
rm -rf "$work"
mkdir -p "$work"
cp "$help"/*.html "$help"/*.css "$help"/merivane.* "$work"
shopt -s nullglob
for picture in "$pictures"/*.png; do cp "$picture" "$work"; done
while read -r number topic; do
  cp "$help/$topic.html" "$work/context-$number.html"
done < "$help/contexts.txt"
cd "$work"
chmcmd merivane.hhp > chmcmd.log || { cat chmcmd.log >&2; exit 1; }
[ -s merivane.chm ] || { cat chmcmd.log >&2; exit 1; }
mv merivane.chm "$target"
