#!/usr/bin/env bash
# What of src/ neither program reaches, a line each: dead-code.sh [build folder, build/dead-code]. Nothing
# listed: exit status 0.
#
# Functions: the programs are built with each function in a section of its own, and the linker drops the
# sections that nothing refers to; what an object of the libraries defines and no program holds is dead. What
# tests alone call is dead too. Names in headers: a function, a member or a constant that stands in no other
# place. Left out is what a source of the other system calls.
set -euo pipefail
cd "$(dirname "$0")/.."

build=${1:-build/dead-code}
mkdir -p "$build"
log=$build/log
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 \
  -DCMAKE_CXX_FLAGS="-ffunction-sections ${MERIVANE_CXX_FLAGS:-}" \
  -DCMAKE_EXE_LINKER_FLAGS="-Wl,--gc-sections" -DBUILD_TESTING=OFF > "$log" 2>&1 ||
  { cat "$log" >&2; exit 2; }
cmake --build "$build" -j "${MERIVANE_JOBS:-$(nproc)}" --target merivane merivane-batch >> "$log" 2>&1 ||
  { tail -50 "$log" >&2; exit 2; }

# File and mangled name of each function that is defined in objects or programs.
functions() { nm -A --defined-only "$@" | awk '$(NF - 1) ~ /^[TtWw]$/ {print $1, $NF}'; }

kept=$(mktemp)
trap 'rm -f "$kept"' EXIT
functions "$build"/bin/merivane "$build"/bin/merivane-batch "$build"/bin/*.so | awk '{print $2}' | sort -u > "$kept"

# Constructors, destructors and operators come from the compiler as well as from us.
unreached() {
  functions "$build"/src/*/CMakeFiles/*.dir/*.o |
    awk -v kept="$kept" 'BEGIN {while ((getline name < kept) > 0) reached[name] = 1}
      !($2 in reached) && $2 ~ /^_ZNK?8merivane/ {sub(/.*\/CMakeFiles\/[^\/]*\//, "", $1); print $2, $1}' |
    sort -u | c++filt | sed -E 's/\[abi:[a-z0-9]+\]//g' | grep -vE '::~|operator|\{lambda' |
    awk '{name = $0; sub(/\(.*/, "", name); n = split(name, part, "::");
          if (n < 2 || part[n] != part[n - 1]) print}'
}

# Names that a header defines and that stand nowhere else, comments apart.
lonely() {
  local once
  once=$(git ls-files 'src/*.h' 'src/*.cpp' | xargs sed 's|//.*||' |
    grep -owE '[A-Za-z_][A-Za-z0-9_]*' | sort | uniq -u)
  for header in $(git ls-files 'src/*.h' ':!src/*windows*'); do
    sed 's|//.*||' "$header" | grep -oE '\b[A-Z][A-Za-z0-9]*\(|\bk[A-Z][A-Za-z0-9]*\b' | tr -d '(' |
      grep -xF "$once" | sed "s|\$| $header|" || true
  done
}

status=0
while read -r line; do
  name=${line%%(*}
  name=${name##*::}
  if [ -z "$line" ] || git grep -qwF -- "$name" -- 'src/*_windows.cpp'; then continue; fi
  echo "$line"
  status=1
done < <(unreached || true; lonely || true)
exit $status
