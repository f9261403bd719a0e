#!/usr/bin/env bash
# Makes the calls that each command of merivane-batch asks of the system fail, one after the other,
# and kills it at each write. Whatever happens, files that stood before are whole afterwards, and
# status and message tell what was done.
#
#   faults.sh [--short] [FOLDER]   FOLDER holds the programs (default: the release build, made first);
#                                  --short tries a few calls of each kind.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
picks=all
if [ "${1:-}" = --short ]; then
  picks=few
  shift
fi
if [ $# -gt 0 ]; then
  bin=$(cd "$1" && pwd)
else
  "$root/scripts/build.sh" release -DBUILD_TESTING=OFF
  bin=$root/build/release/bin
fi
batch=$bin/merivane-batch
place=$(mktemp -d)
trap 'rm -rf "$place"' EXIT
export SOURCE_DATE_EPOCH=1770000000 LC_ALL=C TMPDIR=$place/tmp
mkdir "$TMPDIR"
"${CXX:-c++}" -O2 -shared -fPIC -o "$place/faults.so" "$root/scripts/faults/faults.cpp" -ldl

# What stands before each run: a model, a plan with one project, its changed MPX file, a text.
base=$place/base
mkdir "$base"
cd "$base"
cp "$root/samples/onboarding.txt" model.txt
"$batch" to-project model.txt --database plan.mdb --mpx plan.mpx --xml plan.xml --quiet
sed -i 's/,Set up the desk,/,Set up desk and chair,/' plan.mpx
echo "an earlier text" > again.txt
echo "an earlier picture" > again.svg
echo "an earlier picture" > again.png
echo "an earlier page" > again.html

declare -A commands=(
  [new]="to-project model.txt --database new.mdb --mpx new.mpx --xml new.xml"
  [append]="to-project model.txt --database plan.mdb --append"
  [overwrite]="to-project model.txt --database plan.mdb --overwrite --mpx plan.mpx --force"
  [text]="to-model --database plan.mdb --project 1 --output again.txt --force"
  [merge]="to-model --mpx plan.mpx --interim plan.mdb --merge 1 --output again.txt --force"
  [rebuild]="to-model --mpx plan.mpx --interim plan.mdb --overwrite --output again.txt --force"
  [xml]="to-model --xml plan.xml --interim plan.mdb --merge 1 --output again.txt --force"
  [preview]="to-model --mpx plan.mpx --interim plan.mdb --merge 1 --dry-run"
  [export]="export plan.mdb --project 1 --xml plan.xml --force"
  [projects]="projects plan.mdb"
  [check]="check model.txt"
  [draw]="draw model.txt --output again.svg --force"
  [report]="report model.txt --output again.html --force"
  [png]="draw model.txt --output again.png --force"
  [chart]="chart plan.mdb --project 1 --output again.svg --force"
)

# text_of DATABASE PROJECT: the project as a text, which only a whole database gives.
text_of() {
  rm -f "$work/text.txt"
  "$batch" to-model --database "$1" --project "$2" --output "$work/text.txt" --quiet > /dev/null 2>&1
  cat "$work/text.txt" 2> /dev/null || true
}

# Sets work to a fresh copy of the base and runs the command there.
run() { # COMMAND FAULT
  rm -rf "$work"
  mkdir "$work"
  cp -a "$base" "$work/files"
  cd "$work/files"
  status=0
  {
    # shellcheck disable=SC2086
    timeout 60 env MERIVANE_FAULT="$2" LD_PRELOAD="$place/faults.so" "$batch" ${commands[$1]} \
      > "$work/out" 2> "$work/err" || status=$?
  } 2> /dev/null # where the shell tells that a run was killed
}

# Every file that stood before is as it was, and nothing stands beside them but a new database, whose
# journal stays where not even that can be undone. Where a disk refuses to the end, what was written is
# undone from the journal by who opens the database next.
same_as_before() {
  local file
  for file in "$base"/*; do
    if [ "${file##*/}" = plan.mdb ] && [ -e plan.mdb-journal ]; then
      [ "$(text_of plan.mdb 1)" = "$base_text" ] || echo "plan.mdb is lost"
      continue
    fi
    cmp -s "$file" "${file##*/}" || echo "${file##*/} changed"
  done
  for file in *; do
    [ -e "$base/$file" ] || [[ $file = new.mdb* || $1:$file = *:stay:plan.mdb-journal || $1:$file = write:*:plan.mdb-journal ]] || echo "$file is left"
  done
}

same_as_done() {
  local file
  for file in "$done_files"/*; do
    case $file in
      *.mdb) [ "$(text_of "${file##*/}" 1)$(text_of "${file##*/}" 2)" = "${texts[${file##*/}]}" ] ;;
      *) cmp -s "$file" "${file##*/}" ;;
    esac || echo "${file##*/} is not what the run makes"
  done
}

# After a kill each text is the old or the new one, and the project is in the database or its copy.
whole_after_kill() {
  local file
  for file in "$base"/*; do
    file=${file##*/}
    cmp -s "$base/$file" "$file" || cmp -s "$done_files/$file" "$file" || [ "$file" = plan.mdb ] ||
      echo "$file is in pieces"
  done
  cmp -s "$base/plan.mdb" plan.mdb || cmp -s "$base/plan.mdb" plan.mdb.bak ||
    [ "$(text_of plan.mdb 1)" = "$base_text" ] || echo "the project of plan.mdb is lost"
}

# Prints what is wrong after the run of a fault.
verdict() { # FAULT
  case $status:$1 in
    137:*kill) whole_after_kill ;;
    [03]:*) same_as_done ;;
    [12]:*)
      same_as_before "$1"
      [ -s "$work/err" ] || echo "nothing is told"
      ;;
    *) echo "status $status" ;;
  esac
}

points() { # COUNT WANTED
  [ "$1" -eq 0 ] || seq 1 "$((($1 + $2 - 1) / $2))" "$1"
}

try_command() { # COMMAND
  local work=$place/work-$1 done_files=$place/done-$1 base_text kind count n wanted fault tried=0
  local -A texts
  MERIVANE_FAULT_COUNTS=$place/counts-$1 run "$1" none
  [ "$status" -eq 0 ] || { echo "$1: status $status without a fault"; cat "$work/err"; return 1; }
  cp -a "$work/files" "$done_files"
  base_text=$(text_of "$base/plan.mdb" 1)
  for n in "$done_files"/*.mdb; do texts[${n##*/}]=$(text_of "$n" 1)$(text_of "$n" 2); done
  while read -r kind count; do
    [ "$1" != png ] || [ "$kind" = start ] || continue # fonts have ways of their own around a fault
    wanted=$count
    [ "$kind" != allocation ] || wanted=150
    [ $picks = all ] || wanted=3
    for n in $(points "$count" "$wanted"); do
      for fault in "$kind:$n" "$kind:$n:kill" "$kind:$n:stay"; do
        case $fault in
          write:*:stay) continue ;; # stays anyway
          *:stay) [[ $kind = @(read|sync|start) ]] || continue ;;
          *:kill) [ "$kind" = write ] || [ "$kind" = rename ] || continue ;;
        esac
        run "$1" "$fault"
        verdict "$fault" | sed "s/^/$1, $fault: /"
        tried=$((tried + 1))
      done
    done
  done < "$place/counts-$1"
  echo "$tried" > "$place/tried-$1"
}

for command in "${!commands[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$(nproc)" ]; do wait -n || true; done
  try_command "$command" > "$place/found-$command" 2>&1 &
done
wait
cat "$place"/found-*
for command in "${!commands[@]}"; do echo "$command: $(cat "$place/tried-$command") faults"; done >&2
[ -z "$(cat "$place"/found-*)" ]
