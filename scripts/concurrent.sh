#!/usr/bin/env bash
# Lets two or three runs of merivane-batch at once append to and overwrite one database. What was told
# as done stands, in the database or in the backup that a later run made of it; what was told as failed
# stands nowhere.
#
#   concurrent.sh [ROUNDS] [FOLDER]   200 rounds; FOLDER holds the programs (default: the release build)
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
rounds=${1:-200}
bin=$(cd "${2:-$root/build/release/bin}" && pwd)
batch=$bin/merivane-batch
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
cd "$place"
RANDOM=1
title=$(sed -n 's/^  Project:  //p' "$root/samples/onboarding.txt" | tr -d '\r')

# model NAME: the sample as a project of that name.
model() { sed "s/^  Project:  .*\$/  Project:  $1\r/" "$root/samples/onboarding.txt" > "$1.txt"; }

projects() { "$batch" projects "$1" 2> /dev/null | cut -f2; }

run() { # NAME WORD
  local status=0
  "$batch" to-project "$1.txt" --database plan.mdb "--$2" > "$1.out" 2> "$1.err" || status=$?
  echo "$1 $2 $status" >> runs
}

found=0
tell() {
  echo "round $round: $*"
  found=1
}

for round in $(seq "$rounds"); do
  rm -f plan.mdb* runs ./*.out ./*.err
  model "first$round"
  "$batch" to-project "first$round.txt" --database plan.mdb --quiet
  for number in $(seq $((RANDOM % 2 + 2))); do
    name=r$round-$number
    model "$name"
    word=append
    [ $((RANDOM % 2)) -eq 0 ] || word=overwrite
    run "$name" $word &
    [ $((RANDOM % 3)) -gt 0 ] || sleep 0.0$((RANDOM % 9))
  done
  wait
  projects plan.mdb > now
  for file in plan.mdb.bak*; do [ ! -e "$file" ] || projects "$file"; done > kept
  while read -r name word status; do
    case $status in
      0 | 3) grep -qx "$name" now kept || tell "$name ($word) was told done and stands nowhere" ;;
      1 | 2)
        ! grep -qx "$name" now || tell "$name ($word) failed and stands"
        [ -s "$name.err" ] || tell "$name ($word) failed without a word"
        ! grep -q "Device I/O" "$name.err" || tell "$name ($word): $(cat "$name.err")"
        ;;
      *) tell "$name ($word) ended with $status" ;;
    esac
  done < runs
  grep -qx "first$round" now kept || tell "the first project is lost"
  for file in plan.mdb.bak*; do
    [ ! -e "$file" ] || [ -s "$file" ] || tell "$file is empty"
  done
  ls -A | grep -E '^merivane-' && tell "a temporary file is left"
  rm -f ./*.txt
done
echo "$rounds rounds"
exit $found
