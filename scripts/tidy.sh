#!/usr/bin/env bash
# Runs clang-tidy over our own sources: tidy.sh [--all] [build folder, build/dev]. The folder must be
# configured and built.
#
# Looked at are the sources that changed since the commit in .clang-tidy-base, at which the whole tree
# was clean, and those that include a header that changed. All of them with --all, when the checks
# themselves changed, and where the clone doesn't hold that commit.
set -euo pipefail
cd "$(dirname "$0")/.."

all=no
if [ "${1:-}" = --all ]; then
  all=yes
  shift
fi
build=${1:-build/dev}
base=$(cat .clang-tidy-base)

if [ "$all" = no ] && ! git cat-file -e "$base^{commit}" 2>/dev/null; then
  echo "This clone doesn't hold $base of .clang-tidy-base: the whole tree is looked at."
  all=yes
fi

changed() {
  git diff --name-only --no-renames --diff-filter=d "$base" -- "$@"
  git ls-files --others --exclude-standard -- "$@"
}

# The sources that include a header; those of the headers that include it where no source does.
includers() {
  local name folder found
  case $1 in
    */include/*) name=${1#*/include/} folder=src ;;
    *) name=${1##*/} folder=${1%/*} ;;
  esac
  found=$(git grep -lF "#include \"$name\"" -- "$folder" || true)
  if grep '\.cpp$' <<< "$found"; then return; fi
  for header in $found; do includers "$header"; done
}

files() {
  if [ "$all" = yes ] || [ -n "$(changed .clang-tidy)" ]; then
    git ls-files 'src/*.cpp'
    return
  fi
  changed 'src/*.cpp'
  for header in $(changed 'src/*.h'); do includers "$header"; done
}

files=$(files | grep -v '_windows\.cpp$' | sort -u || true)
echo "Sources to check: $(grep -c . <<< "$files" || true)"
xargs -r -P "$(nproc)" -n 1 clang-tidy -p "$build" --quiet \
  --extra-arg=-Wno-unknown-warning-option <<< "$files" \
  2> >(grep -v 'warnings\? generated' >&2)
