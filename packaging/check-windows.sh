#!/usr/bin/env bash
# Compiles the files of platform/ and runtime/ that belong on Windows with the cross compiler, so
# that they don't rot. Objects only, into a folder that goes away again.
set -euo pipefail
cd "$(dirname "$0")/.."

compiler=${MINGW_CXX:-x86_64-w64-mingw32-g++}
if ! command -v "$compiler" > /dev/null; then
  echo "check-windows: no $compiler here (Debian's g++-mingw-w64-x86-64 has it)" >&2
  exit 1
fi
objects=$(mktemp -d)
trap 'rm -rf "$objects"' EXIT

count=0
failed=()
for file in src/runtime/*.cpp src/platform/*.cpp; do
  case $file in *_posix.cpp) continue ;; esac
  count=$((count + 1))
  "$compiler" -std=c++20 -Wall -Wextra -Werror -Isrc/runtime -Isrc/runtime/include \
    -Isrc/platform -Isrc/platform/include -c "$file" -o "$objects/$count.o" || failed+=("$file")
done

if [ ${#failed[@]} -gt 0 ]; then
  printf 'check-windows: FAILED %s\n' "${failed[@]}" >&2
  exit 1
fi
echo "check-windows: $count files compile"
