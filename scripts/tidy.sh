#!/usr/bin/env bash
# Runs clang-tidy over our own sources; needs a configured and built dev preset.
set -euo pipefail
cd "$(dirname "$0")/.."
git ls-files 'src/*.cpp' | grep -v '_windows\.cpp$' |
  xargs -P "$(nproc)" -n 4 clang-tidy -p build/dev --quiet 2>/dev/null
