#!/usr/bin/env bash
# Complete merges of random edits of random models, ROUNDS models (350) for each of six groups of seeds:
# scripts/merge-rounds.sh [BUILD] [ROUNDS]
set -euo pipefail
cd "$(dirname "$0")/.."
MERIVANE_ROUNDS=${2:-350} "${1:-build/release}/bin/merivane_test_reconcile" --gtest_brief=1 \
  --gtest_filter='*KeepWhatAPlanHolds*'
