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
cd "$work"
while read -r number topic; do
  cp "$help/$topic.html" "context-$number.html"
  echo "context-$number.html" >> merivane.hhp
  aliases+="CONTEXT_$number=context-$number.html"$'\n'
  map+="#define CONTEXT_$number $number"$'\n'
done < "$help/contexts.txt"
printf '\n[ALIAS]\n%s\n[MAP]\n%s' "$aliases" "$map" >> merivane.hhp
# By this name of its folder, which the compiler writes into the file, the file is the same anywhere.
chmcmd /proc/self/cwd/merivane.hhp > chmcmd.log || { cat chmcmd.log >&2; exit 1; }
[ -s merivane.chm ] || { cat chmcmd.log >&2; exit 1; }
# And at any time: the header has one, and so has the record before the compiler's name.
without_time() { printf '\0\0\0\0' | dd of=merivane.chm bs=1 seek="$1" conv=notrunc status=none; }
compiler=$(LC_ALL=C grep -obUaF 'HHA Version' merivane.chm | cut -d: -f1)
without_time 16
without_time $((compiler - 8))
mv merivane.chm "$target"
