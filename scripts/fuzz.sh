#!/usr/bin/env bash
# Builds the fuzz targets and runs each for so many minutes (1): scripts/fuzz.sh [MINUTES] [TARGET...]
# What a target learns is kept in build/fuzz/corpus; a finding ends the run, and its input is left in
# build/fuzz. With RUNS=N a target ends after N executions.
set -euo pipefail
cd "$(dirname "$0")/.."
minutes=${1:-1}
shift || true
scripts/install-packages.sh scripts/packages.txt scripts/packages-fuzz.txt
out=build/fuzz
flags="-O1 -g1 -fno-omit-frame-pointer -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined"
cmake -S . -B "$out" -G Ninja -DMERIVANE_FUZZ=ON -DMERIVANE_DESKTOP=OFF -DBUILD_TESTING=OFF \
  -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++-14 -DCMAKE_CXX_FLAGS_DEBUG="$flags" > "$out.log" ||
  { cat "$out.log"; exit 1; }
targets=("$@")
[ ${#targets[@]} -gt 0 ] || for source in tests/fuzz/*_fuzz.cpp; do
  targets+=("$(basename "${source%_fuzz.cpp}")")
done
cmake --build "$out" --target fuzz_seeds "${targets[@]/#/fuzz_}" -- --quiet
"$out/bin/fuzz_seeds" "$out/seeds"
cp -r tests/fuzz/seeds/. "$out/seeds"

# Words of the samples and of the statements: whole lines up to their value.
word_list() {
  sed -E 's/[\r\\"].*//; s/^ +//; s/(:|  ).*/\1/' "$@" | sort -u | LC_ALL=C grep -aE '^[ -~]{3,60}$' | sed 's/.*/"&"/'
}
word_list samples/*.txt > "$out/neutral_text.dict"
word_list <(tr ',' '\n' < "$out/seeds/mpx/onboarding0") > "$out/mpx.dict"
word_list <(tr -cs 'A-Za-z_' '\n' < src/store/template/template.sql) tests/fuzz/seeds/statement/* \
  > "$out/statement.dict"

cd "$out"
export ASAN_OPTIONS=${ASAN_OPTIONS:-allocator_may_return_null=1}
for target in "${targets[@]}"; do
  mkdir -p "corpus/$target"
  options=(-max_total_time=$((minutes * 60)) -timeout=20 -rss_limit_mb=2048 -print_final_stats=1)
  [ -z "${RUNS:-}" ] || options+=(-runs="$RUNS")
  [ ! -f "$target.dict" ] || options+=(-dict="$target.dict")
  [ "$target" != access ] || options+=(-detect_leaks=0 -handle_segv=0 -handle_bus=0 -handle_fpe=0 -handle_abrt=0)
  echo "== $target"
  "bin/fuzz_$target" "${options[@]}" "corpus/$target" "seeds/$target" 2> "$target.log" ||
    { tail -60 "$target.log"; exit 1; }
  grep -E 'cov:|stat::' "$target.log" | tail -8
done
