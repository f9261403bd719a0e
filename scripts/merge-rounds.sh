#!/usr/bin/env bash
# Complete merges of random edits of random models, MODELS (350) for each of six groups of seeds and two
# rounds each; then ten rounds in a row, each planned again, on a fortieth as many models (54); then the
# texts of the other merge and of rebuilt models (300) are read back:
# scripts/merge-rounds.sh [BUILD] [MODELS]
set -euo pipefail
cd "$(dirname "$0")/.."
models=${2:-350}
build=${1:-build/release}
run() { # MODELS TESTS FILTER
  MERIVANE_MODELS=$1 "$build/bin/merivane_test_$2" --gtest_brief=1 --gtest_filter="$3"
}
run "$models" reconcile '*.KeepWhatAPlanHolds/*'
run $(((models + 39) / 40)) reconcile '*TenRounds*'
run $(((models + 6) / 7)) neutraltext '*RowsOfAMergedAndOfARebuiltModelComeBack*'
