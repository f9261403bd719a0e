#!/usr/bin/env bash
# Installs what is missing and builds one preset: build.sh PRESET [cmake options].
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/install-packages.sh scripts/packages.txt
preset=$1
shift
cmake --preset "$preset" "$@" > /dev/null
cmake --build --preset "$preset" -- --quiet
