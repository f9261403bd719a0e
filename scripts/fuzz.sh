#!/usr/bin/env bash
# Builds the fuzz targets and runs each for so many minutes (1):
# scripts/fuzz.sh [--release] [MINUTES] [TARGET...]
# --release takes the compiler and the flags that users get, no sanitizer: the corpus of earlier runs, the
# seeds, and changes of them by a fixed rule; an abort is a finding.
# A target runs in as many processes as there are cores, or WORKERS=N; they learn from each other by
# build/fuzz/corpus. A finding ends the run, and its input is left in build/fuzz. With RUNS=N a target
# ends after N executions.
set -euo pipefail
cd "$(dirname "$0")/.."
release=
if [ "${1:-}" = --release ]; then
  release=yes
  shift
fi
minutes=${1:-1}
shift || true
scripts/install-packages.sh scripts/packages.txt scripts/packages-fuzz.txt
corpus=$PWD/build/fuzz/corpus
out=build/fuzz${release:+-release}
flags="-O2 -g1 -fno-omit-frame-pointer -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined"
# What costs most and finds least: the sanitizer of addresses sees a null pointer too.
flags+=" -fno-sanitize=null,alignment,object-size,vptr -fno-sanitize-coverage=trace-cmp"
compiler=(-DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++-14 "-DCMAKE_CXX_FLAGS_DEBUG=$flags")
[ -z "$release" ] || compiler=(-DCMAKE_BUILD_TYPE=Release)
mkdir -p build
cmake -S . -B "$out" -G Ninja -DMERIVANE_FUZZ=ON -DMERIVANE_DESKTOP=OFF -DBUILD_TESTING=OFF \
  "${compiler[@]}" > "$out.log" ||
  { cat "$out.log"; exit 1; }
targets=("$@")
[ ${#targets[@]} -gt 0 ] || for source in tests/fuzz/*_fuzz.cpp; do
  targets+=("$(basename "${source%_fuzz.cpp}")")
done
cmake --build "$out" --target fuzz_seeds "${targets[@]/#/fuzz_}" -- --quiet
cp -r tests/fuzz/seeds/. "$out/seeds"
"$out/bin/fuzz_seeds" "$out/seeds"

# Words of the samples and of the statements: whole lines up to their value.
word_list() {
  sed -E 's/[\r\\"].*//; s/^ +//; s/(:|  ).*/\1/' "$@" | sort -u | LC_ALL=C grep -aE '^[ -~]{3,60}$' | sed 's/.*/"&"/'
}
word_list samples/*.txt > "$out/neutral_text.dict"
word_list <(cat "$out"/seeds/mpx/* | tr ',' '\n') > "$out/mpx.dict"
word_list <(cat "$out"/seeds/xml/* | tr -s '<>"' '\n') > "$out/xml.dict"
word_list <(tr -cs 'A-Za-z_' '\n' < src/store/template/template.sql) tests/fuzz/seeds/statement/* \
  > "$out/statement.dict"

cd "$out"
declare -A longest=([neutral_text]=8192 [mpx]=2048 [xml]=10240 [statement]=256 [access]=49152)
export ASAN_OPTIONS=${ASAN_OPTIONS:-allocator_may_return_null=1:malloc_context_size=1:max_malloc_fill_size=0:quarantine_size_mb=4}
workers=${WORKERS:-$(nproc)}
declare -A running=()  # log of each process
trap 'kill "${!running[@]}" 2> /dev/null || true' EXIT

# The workers of a target, until all have ended or one has failed.
run_workers() {
  local target=$1 worker ended
  shift
  for worker in $(seq "$workers"); do
    "bin/fuzz_$target" "$@" 2> "$target.$worker.log" &
    running[$!]=$target.$worker.log
  done
  while [ ${#running[@]} -gt 0 ]; do
    wait -n -p ended "${!running[@]}" || { tail -60 "${running[$ended]}"; exit 1; }
    unset "running[$ended]"
  done
}

if [ -n "$release" ]; then
  for target in "${targets[@]}"; do
    echo "== $target on the release build's flags"
    mkdir -p "$corpus/$target"
    MALLOC_CHECK_=3 MALLOC_PERTURB_=165 "bin/fuzz_$target" $((minutes * 60)) "${longest[$target]}" \
      "seeds/$target" "$corpus/$target"
  done
  exit
fi

for target in "${targets[@]}"; do
  mkdir -p "corpus/$target"
  # What takes longer than the cases: looking for leaks after each (it is done at the end), and
  # counting how rare each feature of the corpus is.
  options=(-max_total_time=$((minutes * 60)) -max_len="${longest[$target]}" -detect_leaks=0
    -entropic=0 -timeout=20 -rss_limit_mb=2048 -print_final_stats=1)
  [ -z "${RUNS:-}" ] || options+=(-runs="$(((RUNS + workers - 1) / workers))")
  [ ! -f "$target.dict" ] || options+=(-dict="$target.dict")
  leaks=1  # the library that reads Access files is left in the middle of a case
  if [ "$target" = access ]; then
    leaks=0
    options+=(-handle_segv=0 -handle_bus=0 -handle_fpe=0 -handle_abrt=0)
  fi
  echo "== $target"
  rm -f "$target".*.log
  ASAN_OPTIONS=$ASAN_OPTIONS:detect_leaks=$leaks \
    run_workers "$target" "${options[@]}" "corpus/$target" "seeds/$target"
  awk '/ cov: / {for (i = 1; i < NF; ++i) if ($i == "cov:" && $(i + 1) >= edges) {edges = $(i + 1); features = $(i + 3)}}
       /stat::number_of_executed_units/ {units += $2}
       /stat::average_exec_per_sec/ {rate += $2}
       END {print units " executions, " rate " a second, " edges " edges, " features " features"}' "$target".*.log
done
