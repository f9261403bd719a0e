#!/usr/bin/env bash
# Tries what package.sh made as its user would, under Wine with a Windows of its own:
# check-package.sh OUTPUT_FOLDER. Where build/release has the batch program, both must write the same.
set -euo pipefail
output=$(realpath "$1")
cd "$(dirname "$0")/../.."
here=$PWD
wine=$here/scripts/windows/wine.sh
scratch=$(mktemp -d)
export WINEPREFIX=$scratch/wine WINEDLLOVERRIDES="mscoree,mshtml,winemenubuilder.exe="
export LC_ALL=C.UTF-8 SOURCE_DATE_EPOCH=1700000000
trap 'wineserver -k || true; rm -rf "$scratch"' EXIT

fail() { echo "package: FAILED: $*" >&2; exit 1; }

zip=$(find "$output" -name 'merivane-*-windows.zip')
setup=$(find "$output" -name 'merivane-*-setup.exe')
[ -f "$zip" ] && [ -f "$setup" ] || fail "not one zip and one setup program in $output"
version=$(basename "$setup" -setup.exe)
version=${version#merivane-}

# translate COMMAND...: with the command, the sample's plan as plan.mpx and its model as again.txt.
translate() {
  cp "$here/samples/onboarding.txt" model.txt
  "$@" to-project model.txt --database plan.mdb --mpx plan.mpx > translate.log 2>&1 &&
    "$@" to-model --database plan.mdb --project 1 --output again.txt >> translate.log 2>&1
}

# check_translation PROGRAM: a Windows program against the one of this system.
check_translation() {
  local place
  place=$(mktemp -d -p "$scratch" 'Pläne 計画 XXXX')
  cd "$place"
  translate "$wine" "$1" || fail "$1 ended with $?: $(cat translate.log)"
  [ -s plan.mpx ] && [ -s again.txt ] || fail "$1 made no plan or no model"
  local linux=$here/build/release/bin/merivane-batch
  if [ -x "$linux" ]; then
    mkdir linux
    (cd linux && translate "$linux") || fail "$linux ended with $?"
    cmp plan.mpx linux/plan.mpx || fail "$1 writes another MPX file"
    cmp again.txt linux/again.txt || fail "$1 writes another model"
  fi
  cd "$scratch"
}

check_version() {
  local told
  told=$("$wine" "$1" --version) || fail "$1 --version ended with $?"
  [[ $told == *"$version"* ]] || fail "$1 tells another version: $told"
}

runs() { pgrep -fx "$1" > /dev/null; }  # Wine keeps the name that it was started by

# is_whole FOLDER: what the zip holds, but for the settings that are kept beside the program there alone.
is_whole() {
  [ ! -e "$1/merivane.ini" ] && diff -r -x uninstall.exe -x merivane.ini "$scratch/merivane-$version" "$1" >&2
}

# open_window PROGRAM: the desktop program comes up and stays, and meanwhile no setup touches it.
open_window() {
  [ -e "$1" ] || return 0
  [ -e "$(dirname "$1")/merivane.chm" ] || fail "no help beside $1"
  xvfb-run -a "$wine" "$1" 2> /dev/null &
  local window=$! seconds=0
  until runs "$1"; do
    [ $((seconds += 1)) -lt 60 ] || fail "$1 does not come up"
    sleep 1
  done
  sleep 5
  ! "$wine" setup.exe /S || fail "setup replaces a program that runs"
  is_whole "$(dirname "$1")" && registered HKLM DisplayName > /dev/null || fail "setup took away from a program that runs"
  runs "$1" || fail "$1 does not stay"
  wineserver -k
  wait $window || true
  wineserver -w
}

uninstall_key='\Software\Microsoft\Windows\CurrentVersion\Uninstall\Merivane'
# registered ROOT VALUE: what Windows keeps about the installed program; fails where nothing is.
registered() {
  "$wine" reg query "$1$uninstall_key" /v "$2" 2> /dev/null | tr -d '\r' |
    sed -n "s/^ *$2 *REG_[A-Z]* *//p" | grep .
}
menus() { find "$WINEPREFIX/drive_c" -path '*Start Menu*' -iname '*merivane*'; }

# install ROOT FOLDER [WORDS]: silently, and whether everything is where it belongs. The words stand
# in a batch file, since those after /D= bear no quotes.
install() {
  local root=$1 folder=$2 words=${3:-}
  echo "setup.exe /S $words" > setup.bat
  "$wine" cmd /c setup.bat > /dev/null || fail "setup $words ended with $?"
  is_whole "$folder" || fail "setup $words installs another thing than the zip"
  check_version "$folder/merivane-batch.exe"
  [ "$(registered "$root" DisplayVersion)" = "$version" ] || fail "setup $words: no entry for version $version"
  [ "$(registered "$root" Publisher)" = Vorn ] || fail "setup $words: no publisher"
  registered "$root" EstimatedSize > /dev/null || fail "setup $words: no size"
  [ -n "$(menus)" ] || fail "setup $words: nothing in the start menu"
}

# uninstall ROOT: with the command that Windows would run, which goes on after its process ended.
uninstall() {
  registered "$1" QuietUninstallString > uninstall.bat || fail "no command to uninstall silently"
  "$wine" cmd /c uninstall.bat > /dev/null || fail "uninstalling ended with $?"
  wineserver -w
  ! registered "$1" DisplayName > /dev/null || fail "the entry of $1 stays"
  [ -z "$(menus)" ] || fail "stays in the start menu: $(menus)"
}

# field FILE NAME: every value of a field of winget's manifest, each once.
field() { sed -n "s/^[ -]*$2: //p" "$output/winget/Vorn.Merivane$1" | sort -u; }
# check_manifest ROOT: it tells of this setup program, and of what that has registered.
check_manifest() {
  local part pair
  for part in .yaml:version .locale.en-US.yaml:defaultLocale .installer.yaml:installer; do
    local file=${part%:*}
    [ "$(field "$file" PackageIdentifier)" = Vorn.Merivane ] &&
      [ "$(field "$file" PackageVersion)" = "$version" ] &&
      [ "$(field "$file" ManifestType)" = "${part#*:}" ] &&
      [ "$(field "$file" ManifestVersion)" = "$(field .yaml ManifestVersion)" ] ||
      fail "winget's manifest $file is of another package or version"
    ! grep -n @ "$output/winget/Vorn.Merivane$file" >&2 || fail "winget's manifest $file is not filled in"
  done
  [ "$(field .yaml DefaultLocale)" = "$(field .locale.en-US.yaml PackageLocale)" ] || fail "another locale"
  [ "$(field .installer.yaml InstallerSha256)" = "$(sha256sum < "$setup" | cut -d ' ' -f 1 | tr a-f A-F)" ] ||
    fail "winget's manifest has the sum of another setup program"
  [[ $(field .installer.yaml InstallerUrl) == https://*/$(basename "$setup") ]] || fail "another setup program's address"
  [ "$(field .installer.yaml ProductCode)" = "${uninstall_key##*\\}" ] || fail "another product code"
  for pair in Publisher:Publisher PackageName:DisplayName PackageVersion:DisplayVersion; do
    [ "$(field .locale.en-US.yaml "${pair%:*}")" = "$(registered "$1" "${pair#*:}")" ] ||
      fail "winget's manifest has another ${pair%:*} than what is registered"
  done
}

"$wine" wineboot -i > /dev/null 2>&1
cd "$scratch"
unzip -q "$zip"
cp "$setup" setup.exe
check_version "$scratch/merivane-$version/merivane-batch.exe"
check_translation "$scratch/merivane-$version/merivane-batch.exe"

for_all="$WINEPREFIX/drive_c/Program Files/Merivane"
install HKLM "$for_all"
check_manifest HKLM
check_translation "$for_all/merivane-batch.exe"
open_window "$for_all/merivane.exe"
echo mine > "$for_all/samples/mine.txt"
uninstall HKLM
[ "$(cd "$for_all" && find . -type f)" = ./samples/mine.txt ] ||
  fail "after uninstalling, not just the user's own file is there: $(find "$for_all")"

# Again over itself, into another folder, and for one user.
mine="$WINEPREFIX/drive_c/My tools/Merivane"
install HKCU "$WINEPREFIX/drive_c/old" '/CurrentUser /D=C:\old'
install HKCU "$mine" '/CurrentUser /D=C:\My tools\Merivane'
[ ! -e "$WINEPREFIX/drive_c/old" ] || fail "the earlier version stays"
uninstall HKCU
[ ! -e "$mine" ] || fail "stays after uninstalling: $(find "$mine")"

echo "package: ok ($(stat -c %s "$zip") bytes zip, $(stat -c %s "$setup") bytes setup)"
