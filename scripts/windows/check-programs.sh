#!/usr/bin/env bash
# Runs the Windows programs as a user would, under Wine: check-programs.sh BIN-FOLDER
# What a test inside one process can't show: the command line, the console, the system's languages.
set -euo pipefail
cd "$(dirname "$0")/../.."
bin=$1
wine=scripts/windows/wine.sh
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
fail() { echo "check-programs: FAILED $*" >&2; exit 1; }

# Names on the command line, in the message and on the disk: in no code page together.
name="$scratch/Größe 中文 ř.mdb"
told=$($wine "$bin/merivane-batch.exe" to-project samples/onboarding.txt --database "$name" \
  --mpx "$scratch/plan.mpx") || fail "a name of several alphabets: $told"
[ -s "$name" ] || fail "the database has another name: $(ls "$scratch")"
grep -q "中文 ř" <<< "$told" || fail "the name came out as: $told"
status=0
told=$($wine "$bin/merivane-batch.exe" projects "$scratch/none.mdb" 2>&1) || status=$?
[ $status -ne 0 ] && [ -n "$told" ] || fail "a database that isn't there: status $status, $told"

# The first line of an MPX file tells the system's OEM code page.
made_locales=$scratch/locales
mkdir "$made_locales"
for pair in en_US:ANSI ja_JP:932 ko_KR:949; do
  language=${pair%:*} page=${pair#*:}
  localedef -i "$language" -f UTF-8 "$made_locales/$language.UTF-8"
  # A Windows of its own: the language is asked for when the first program starts.
  prefix=$scratch/wine-$language
  env LOCPATH="$made_locales" LC_ALL="$language.UTF-8" WINEPREFIX="$prefix" $wine \
    "$bin/merivane-batch.exe" to-project samples/onboarding.txt --database "$scratch/$language.mdb" \
    --mpx "$scratch/$language.mpx" --quiet || fail "a run in $language"
  WINEPREFIX=$prefix WINEDEBUG=-all wineserver -k || true
  line=$(head -c 60 "$scratch/$language.mpx" | head -1 | tr -d '\r')
  [ "$line" = "MPX,Microsoft Project for Windows,4.0,$page" ] || fail "$language: $line"
done

# The reader of Access files beside the program, on what is none: told, and no file left.
printf '\0\1\0\0Standard Jet DB\0' | head -c 4096 > "$scratch/cut.mdb"
status=0
told=$($wine "$bin/merivane-batch.exe" projects "$scratch/cut.mdb" 2>&1) || status=$?
[ $status -ne 0 ] && grep -q "can't be read as an Access database" <<< "$told" ||
  fail "a cut Access file: status $status, $told"
for plan in ../shared/plans/*.mpd; do
  [ -e "$plan" ] || continue
  cp "$plan" "$scratch/Größe 中文.mpd"
  $wine "$bin/merivane-batch.exe" projects "$scratch/Größe 中文.mpd" > /dev/null || fail "$plan by another name"
  $wine "$bin/merivane-batch.exe" projects "$plan" --json > "$scratch/windows.json" || fail "$plan"
  [ -x build/release/bin/merivane-batch ] || continue
  build/release/bin/merivane-batch projects "$plan" --json > "$scratch/linux.json"
  cmp <(tr -d '\r' < "$scratch/windows.json") "$scratch/linux.json" || fail "$plan reads otherwise"
done
echo "check-programs: ok"
