#!/usr/bin/env bash
# Tells the libraries inside the programs, each with its version, Debian's patches and its licence:
#   bill-of-materials.sh table windows LIBRARIES         for people (see packaging/windows/third-party.txt)
#   bill-of-materials.sh spdx windows VERSION LIBRARIES  a bill of materials, as SPDX 2.3 has it
#   bill-of-materials.sh spdx debian VERSION             of the libraries of Debian that the programs load
# LIBRARIES is the folder of scripts/windows/libraries.sh. Dates are SOURCE_DATE_EPOCH.
set -euo pipefail

# Name; Debian's source package; a package that is here where none is unpacked; licence; its file.
libraries() {
  cat <<'LIST'
SQLite|sqlite3|libsqlite3-dev|blessing|sqlite3
pugixml|pugixml|libpugixml-dev|MIT|pugixml
CLI11|cli11|libcli11-dev|BSD-3-Clause|cli11
JSON for Modern C++|nlohmann-json3|nlohmann-json3-dev|MIT|nlohmann-json
Graphviz|graphviz|libgraphviz-dev|EPL-1.0|graphviz
MDB Tools (libmdb)|mdbtools|mdbtools-dev|LGPL-2.0-or-later|mdbtools
Qt 6 (windows)|qt6-base|qt6-base-dev|LGPL-3.0-only|qt6-base
chmlib (windows)|chmlib|libchm-dev|LGPL-2.1-or-later|chmlib
LIST
  if [ "$system" = windows ]; then
    cat <<'LIST'
GCC's libraries|gcc-mingw-w64|gcc-mingw-w64-base|GPL-3.0-or-later WITH GCC-exception-3.1|gcc
MinGW-w64's libraries|mingw-w64|mingw-w64-x86-64-dev|ZPL-2.1 AND MIT|mingw-w64
LIST
  else
    cat <<'LIST'
Qt 6 SVG (windows)|qt6-svg|libqt6svg6|LGPL-3.0-only|qt6-svg
librsvg|librsvg|librsvg2-2|LGPL-2.1-or-later|librsvg
libseccomp|libseccomp|libseccomp2|LGPL-2.1-only|libseccomp
Fontconfig|fontconfig|libfontconfig1|MIT|fontconfig
mimalloc|mimalloc|libmimalloc2.0|MIT|mimalloc
LIST
  fi
}

version_of() {  # SOURCE HERE
  cat "$folder/sources/$1.version" 2> /dev/null ||
    dpkg-query -W -f '${source:Version}\n' "$2"
}

patches_of() {  # SOURCE: names of what Debian changed in sources that are unpacked
  grep -v -e '^#' -e '^$' "$folder/sources/$1/debian/patches/series" 2> /dev/null || true
}

table() {
  local name source here licence file
  printf '%-24s %-22s %-9s %-46s %s\n' Library Version Patches Licence 'in "licences"'
  libraries | while IFS='|' read -r name source here licence file; do
    printf '%-24s %-22s %-9s %-46s %s\n' "$name" "$(version_of "$source" "$here")" \
      "$(patches_of "$source" | wc -l)" "$licence" "$file.txt"
  done
}

package() {  # ID NAME VERSION SUPPLIER LICENCE
  printf '\nPackageName: %s\nSPDXID: SPDXRef-%s\nPackageVersion: %s\n' "$2" "$1" "$3"
  printf 'PackageSupplier: Organization: %s\nPackageDownloadLocation: NOASSERTION\n' "$4"
  printf 'FilesAnalyzed: false\nPackageLicenseConcluded: %s\nPackageLicenseDeclared: %s\n' "$5" "$5"
  printf 'PackageCopyrightText: NOASSERTION\n'
}

spdx() {
  local release=$1 name source here licence file patches
  printf 'SPDXVersion: SPDX-2.3\nDataLicense: CC0-1.0\nSPDXID: SPDXRef-DOCUMENT\n'
  printf 'DocumentName: merivane-%s-%s\n' "$release" "$system"
  printf 'DocumentNamespace: https://vorn.example/spdx/merivane-%s-%s\n' "$release" "$system"
  printf 'Creator: Organization: Vorn\nCreated: %s\n' \
    "$(date -u -d "@${SOURCE_DATE_EPOCH:-0}" +%Y-%m-%dT%H:%M:%SZ)"
  package merivane merivane "$release" Vorn Apache-2.0
  printf 'Relationship: SPDXRef-DOCUMENT DESCRIBES SPDXRef-merivane\n'
  libraries | while IFS='|' read -r name source here licence file; do
    package "$source" "$name" "$(version_of "$source" "$here")" Debian "$licence"
    patches=$(patches_of "$source")
    [ -z "$patches" ] || printf 'PackageComment: <text>Patches of Debian:\n%s</text>\n' "$patches"
    printf 'Relationship: SPDXRef-merivane %s SPDXRef-%s\n' \
      "$([ "$system" = windows ] && echo CONTAINS || echo DEPENDS_ON)" "$source"
  done
}

what=$1 system=$2
shift 2
case $what in
  table) folder=$1; table ;;
  spdx) folder=${2:-/nowhere}; spdx "$1" ;;
  *) echo "usage: scripts/bill-of-materials.sh table|spdx windows|debian ..." >&2; exit 2 ;;
esac
