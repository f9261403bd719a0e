#!/usr/bin/env bash
# Complete merges of random edits of random models, MODELS (350) for each of six groups of seeds and two
# rounds each; then ten rounds in a row, each planned again, on a fortieth as many models (54):
# scripts/merge-rounds.sh [BUILD] [MODELS]
set -euo pipefail
cd "$(dirname "$0")/.."
models=${2:-350}
tests=${1:-build/release}/bin/merivane_test_reconcile
MERIVANE_MODELS=$models "$tests" --gtest_brief=1 --gtest_filter='*.KeepWhatAPlanHolds/*'
MERIVANE_MODELS=$(((models + 39) / 40)) "$tests" --gtest_brief=1 --gtest_filter='*TenRounds*'
