#!/usr/bin/env bash
# Installs the Debian packages of the lists that are named, where they are missing.
set -euo pipefail
missing=()
for list in "$@"; do
  while read -r package; do
    [ -n "$package" ] || continue
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
      missing+=("$package")
  done < "$list"
done
[ ${#missing[@]} -gt 0 ] || exit 0
echo "Installing: ${missing[*]}"
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" > /dev/null
