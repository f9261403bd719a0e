#!/usr/bin/env bash
# One name, one home: fails on a constant that two headers of one library define. Each would be its
# own translation unit's truth, and the linker would keep either.
set -euo pipefail
cd "$(dirname "$0")/.."
status=0
for library in src/*/; do
  twice=$({ git grep -hoE '^inline constexpr [^=({]*\bk[A-Z][A-Za-z0-9]*' -- "$library*.h" || true; } |
    awk '{print $NF}' | sort | uniq -d)
  [ -z "$twice" ] || { echo "$library: in more than one header:" $twice >&2; status=1; }
done
exit $status
