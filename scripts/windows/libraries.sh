#!/usr/bin/env bash
# Makes the libraries that the Windows programs are built from: fetches Debian's sources, and builds
# them with the cross compiler into FOLDER/prefix. libraries.sh FOLDER [--qt]
# A library that is there already is not made again.
set -euo pipefail
cd "$(dirname "$0")/../.."
here=$PWD
folder=$1
qt=${2:-}
export MERIVANE_WINDOWS=$folder
toolchain=$here/cmake/windows.toolchain.cmake
prefix=$folder/prefix
mkdir -p "$folder/sources" "$folder/build" "$prefix"
exec 9> "$folder/lock"
flock 9

# Packages with the release whose source Debian still has. Sources are fetched for this user alone:
# apt's own lists stay as they are.
declare -A release=([sqlite3]=bookworm [pugixml]=bookworm [chmlib]=bookworm [graphviz]=bookworm
  [googletest]=bookworm [mdbtools]=trixie [qt6-base]=bookworm)

apt_state=$folder/apt
prepare_apt() {
  mkdir -p "$apt_state/lists/partial" "$apt_state/cache/archives/partial"
  local suite key=signed-by=/usr/share/keyrings/debian-archive-keyring.gpg
  for suite in bookworm trixie; do
    echo "deb-src [$key] http://deb.debian.org/debian $suite main"
    echo "deb-src [$key] http://deb.debian.org/debian $suite-updates main"
    echo "deb-src [$key] http://deb.debian.org/debian-security $suite-security main"
  done > "$apt_state/sources.list"
  cat > "$apt_state/apt.conf" <<CONF
Dir::Etc::SourceList "$apt_state/sources.list";
Dir::Etc::SourceParts "/dev/null";
Dir::State::Lists "$apt_state/lists";
Dir::Cache "$apt_state/cache";
APT::Sandbox::User "";
CONF
  export APT_CONFIG=$apt_state/apt.conf
  # Once a day; without a network, what was fetched before serves.
  [ -z "$(find "$apt_state/lists-are-new" -mtime -1 2> /dev/null)" ] || return 0
  if apt-get update -qq; then
    touch "$apt_state/lists-are-new"
  elif [ ! -e "$apt_state/lists-are-new" ]; then
    exit 1
  else
    echo "Debian's lists can't be fetched; the versions are those of the last time" >&2
  fi
}

# newest PACKAGE: its newest version in the release, with the fixes that came after it.
newest() {
  local found version=
  for found in $(apt-cache madison "$1" |
    awk -v suite="${release[$1]}" '$6 ~ "^" suite "(-updates|-security)?/" { print $3 }'); do
    [ -n "$version" ] && dpkg --compare-versions "$found" le "$version" || version=$found
  done
  [ -n "$version" ] || { echo "no source of $1 in ${release[$1]}" >&2; return 1; }
  echo "$version"
}

# source_of PACKAGE: its sources with Debian's patches, unpacked in FOLDER/sources/PACKAGE.
source_of() {
  local package=$1 place=$folder/sources/$1
  [ "$(cat "$place.version" 2> /dev/null)" != "${version[$package]}" ] || return 0
  rm -rf "$place" "$place.version"
  local fetched patch
  fetched=$(mktemp -d -p "$folder")
  (
    cd "$fetched"
    for part in tar diff; do
      apt-get source -qq --download-only --only-source "--$part-only" \
        "$package=${version[$package]}" > /dev/null
    done
    mkdir unpacked
    tar -xf ./*.orig.tar.* -C unpacked --strip-components=1
    tar -xf ./*.debian.tar.* -C unpacked
    cd unpacked
    for patch in $(sed 's/[ #].*//' debian/patches/series 2> /dev/null); do
      patch -s -p1 -i "debian/patches/$patch"
    done
  )
  mv "$fetched/unpacked" "$place"
  rm -r "$fetched"
  echo "${version[$package]}" > "$place.version"
}

prepare_apt
declare -A version
for package in "${!release[@]}"; do
  version[$package]=$(newest "$package")
done

# build NAME cmake-options...: configures, builds and installs FOLDER/build/NAME.
build() {
  local name=$1
  shift
  echo "building $name for Windows"
  rm -rf "$folder/build/$name"  # another tree may have made it
  {
    cmake -G Ninja -B "$folder/build/$name" -DCMAKE_TOOLCHAIN_FILE="$toolchain" \
      -DCMAKE_INSTALL_PREFIX="$prefix" -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
      -DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache "$@" &&
      cmake --build "$folder/build/$name" && cmake --install "$folder/build/$name"
  } > "$folder/build/$name.log" 2>&1 || { tail -40 "$folder/build/$name.log" >&2; exit 1; }
}

# recipe PACKAGES FILES...: what the libraries are made from, in one word.
recipe() {
  local package
  {
    for package in $1; do echo "$package ${version[$package]}"; done
    cat "$toolchain" "${@:2}"
  } | sha256sum
}

# made NAME WHAT-IT-IS-MADE-FROM: whether it was made from these very files before.
made() {
  [ "$(cat "$prefix/made/$1" 2> /dev/null)" = "$2" ]
}
note_made() {
  mkdir -p "$prefix/made"
  echo "$2" > "$prefix/made/$1"
}

c_packages="sqlite3 chmlib graphviz mdbtools"
recipe=$(recipe "$c_packages" scripts/windows/libraries/{,graphviz/}*.*)
if ! made c "$recipe"; then
  for package in $c_packages; do source_of "$package"; done
  if [ ! -e "$folder/sources/sqlite3/is-patched" ]; then
    (cd "$folder/sources/sqlite3" && rm -f sqlite3.c && ./configure -q > /dev/null && make -s sqlite3.c sqlite3.h > /dev/null)
    # A database that is open may be given another name, as elsewhere.
    sed -i 's/dwShareMode = FILE_SHARE_READ | FILE_SHARE_WRITE;/dwShareMode = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;/' "$folder/sources/sqlite3/sqlite3.c"
    grep -q FILE_SHARE_DELETE "$folder/sources/sqlite3/sqlite3.c"
    touch "$folder/sources/sqlite3/is-patched"
  fi
  # Whether there is a file is asked by its name in UTF-8 (utf8_names.c).
  sed -i 's/!stat(\([a-z_]*\), &status)/!HasUtf8Name(\1)/' "$folder/sources/mdbtools/src/libmdb/file.c"
  grep -q HasUtf8Name "$folder/sources/mdbtools/src/libmdb/file.c"
  if [ ! -e "$folder/sources/graphviz/is-static" ]; then
    # Its headers know Windows by libraries that are loaded, not by static ones.
    grep -rlZ '__declspec' "$folder"/sources/graphviz/{lib,plugin} | xargs -0 sed -i \
      -e 's/__declspec(dll[a-z]*)/extern/g' -e 's/extern  *extern/extern/g'
    sed -i 's/gvNEWcontext(NULL, TRUE)/gvNEWcontext(lt_preloaded_symbols, FALSE)/' \
      "$folder/sources/graphviz/lib/gvc/gvc.c"
    touch "$folder/sources/graphviz/is-static"
  fi
  build c -S scripts/windows/libraries -DSOURCES="$folder/sources"
  note_made c "$recipe"
fi

recipe=$(recipe "pugixml googletest")
if ! made cxx "$recipe"; then
  source_of pugixml
  source_of googletest
  build pugixml -S "$folder/sources/pugixml"
  build googletest -S "$folder/sources/googletest"
  # Headers alone, the same for every system.
  mkdir -p "$prefix/include" "$prefix/share/cmake"
  cp -r /usr/include/CLI /usr/include/nlohmann "$prefix/include"
  cp -r /usr/share/cmake/CLI11 /usr/share/cmake/nlohmann_json "$prefix/share/cmake"
  note_made cxx "$recipe"
fi

qt_options=(-DCMAKE_BUILD_TYPE=MinSizeRel -DQT_QMAKE_TARGET_MKSPEC=win32-g++ -DINPUT_opengl=no
  -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF)
for feature in network sql dbus opengl xml tabletevent pkg_config vulkan concurrent; do
  qt_options+=("-DFEATURE_$feature=OFF")
done
recipe=$(recipe qt6-base <(echo "${qt_options[@]}"))
if [ "$qt" = --qt ] && ! made qt "$recipe"; then
  source_of qt6-base
  host=/usr/lib/x86_64-linux-gnu/cmake
  build qt -S "$folder/sources/qt6-base" -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=$host \
    -DQt6HostInfo_DIR=$host/Qt6HostInfo "${qt_options[@]}"
  note_made qt "$recipe"
fi
