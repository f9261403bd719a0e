#!/usr/bin/env bash
# Makes merivane-VERSION-windows.zip, merivane-VERSION-setup.exe and the manifest of the latter for winget
# of a Windows build: package.sh BUILD_FOLDER OUTPUT_FOLDER. One commit gives the same bytes, with the libraries in one folder; their
# date is SOURCE_DATE_EPOCH, else the commit's.
set -euo pipefail
build=$(realpath "$1")
mkdir -p "$2"
output=$(realpath "$2")
cd "$(dirname "$0")/../.."
export TZ=UTC LC_ALL=C
export SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git log -1 --format=%ct)}
version=$(sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
name=merivane-$version
folder=$scratch/$name
mkdir -p "$folder/samples" "$folder/licences"

programs=(merivane-batch.exe merivane-access.exe merivane-layout.exe)
desktop='/^\[desktop\]/d'
if [ -e "$build/bin/merivane.exe" ]; then
  programs+=(merivane.exe)
  desktop='s/^\[desktop\]//'
fi
for program in "${programs[@]}"; do
  x86_64-w64-mingw32-strip -o "$folder/$program" "$build/bin/$program"
done
cp "$build/bin/MerivaneTemplate.mdb" "$folder"
[ ! -e "$build/bin/merivane.chm" ] || cp "$build/bin/merivane.chm" "$folder"
cp samples/* "$folder/samples"

# with_returns FILE: as Windows ends its lines.
with_returns() { sed 's/$/\r/' "$1"; }
sed -e "s/@VERSION@/$version/" -e "$desktop" packaging/windows/README.txt > "$scratch/README.txt"
with_returns "$scratch/README.txt" > "$folder/README.txt"
libraries=${MERIVANE_WINDOWS:-$HOME/.cache/merivane-windows}
{
  cat packaging/windows/third-party.txt
  scripts/bill-of-materials.sh table windows "$libraries"
} > "$scratch/third-party.txt"
with_returns "$scratch/third-party.txt" > "$folder/third-party.txt"
scripts/bill-of-materials.sh spdx windows "$version" "$libraries" > "$folder/merivane.spdx"
while read -r package licence; do
  with_returns "/usr/share/doc/$package/copyright" > "$folder/licences/$licence.txt"
done <<'PACKAGES'
libsqlite3-dev sqlite3
libpugixml-dev pugixml
libcli11-dev cli11
nlohmann-json3-dev nlohmann-json
libgraphviz-dev graphviz
mdbtools-dev mdbtools
gcc-mingw-w64-base gcc
mingw-w64-x86-64-dev mingw-w64
qt6-base-dev qt6-base
libchm-dev chmlib
PACKAGES
for licence in Apache-2.0 LGPL-2 LGPL-2.1 LGPL-3 GPL-2 GPL-3; do
  with_returns "/usr/share/common-licenses/$licence" > "$folder/licences/$licence.txt"
done

# What is unpacked keeps its settings beside itself; what is installed keeps them with the user.
[ ! -e "$folder/merivane.exe" ] || : > "$folder/merivane.ini"
find "$folder" -type d -exec chmod 755 {} + -o -name '*.exe' -exec chmod 755 {} + -o -exec chmod 644 {} +
find "$folder" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
rm -f "$output"/merivane-*-{windows.zip,setup.exe}
(cd "$scratch" && find "$name" -type f | sort | zip -q -X -@ "$output/$name-windows.zip")
rm -f "$folder/merivane.ini"

# The setup program installs, and its uninstaller removes, these files by their names.
(cd "$folder" && find . -mindepth 1 -printf '%y %P\n' | sort -k 2) > "$scratch/files"
while read -r type path; do
  case $type in
    d) echo "CreateDirectory \"\$INSTDIR\\${path//\//\\}\"" ;;
    f) echo "File \"/oname=${path//\//\\}\" \"\${FILES}/$path\"" ;;
  esac
done < "$scratch/files" > "$scratch/install.nsh"
tac "$scratch/files" | while read -r type path; do
  case $type in
    d) echo "RMDir \"\$INSTDIR\\${path//\//\\}\"" >> "$scratch/remove_folders.nsh" ;;
    f) echo "Delete \"\$INSTDIR\\${path//\//\\}\"" >> "$scratch/remove_files.nsh" ;;
  esac
done
size=$(find "$folder" -type f -printf '%s\n' | awk '{ bytes += $1 } END { print int(bytes / 1024) }')
makensis -V2 -WX -DVERSION="$version" -DSIZE="$size" -DFILES="$folder" -DLISTS="$scratch" \
  -DICON="$build/packaging/windows/merivane.ico" -DOUTPUT="$output/$name-setup.exe" \
  packaging/windows/setup.nsi

# What winget is told of this setup program: winget/Vorn.Merivane.*.yaml, for its public list.
rm -rf "$output/winget"
mkdir "$output/winget"
sum=$(sha256sum "$output/$name-setup.exe" | cut -d ' ' -f 1)
for manifest in packaging/windows/winget/*.yaml; do
  part=.$(basename "$manifest")
  [ "$part" != .version.yaml ] || part=.yaml
  sed -e "s/@VERSION@/$version/" -e "s/@SHA256@/${sum^^}/" \
    -e "s/@DATE@/$(date -u -d "@$SOURCE_DATE_EPOCH" +%F)/" "$manifest" > "$output/winget/Vorn.Merivane$part"
done
ls -l "$output/$name"-{windows.zip,setup.exe}
