#!/usr/bin/env bash
# Makes a Debian 12 machine ready to build and test Velvetmoor. Safe to run again at any time; when nothing is
# missing it only looks and returns. Everything comes from the machine's own package sources; the one thing
# built here is libpng for the Windows target, from the distribution's source package.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD

native_packages=(
  build-essential g++ cmake ninja-build pkg-config ccache python3 git ca-certificates
  clang clang-tidy clang-format libclang-rt-14-dev llvm
  libgtest-dev googletest libgmock-dev libbenchmark-dev
  libpng-dev zlib1g-dev
)
windows_packages=(
  g++-mingw-w64-i686-posix libz-mingw-w64-dev dpkg-dev
  xvfb xauth xdotool x11-apps imagemagick
)
wine_packages=(wine wine32:i386)

mkdir -p build
log=$root/build/setup.log
exec 9>build/setup.lock
if ! flock -n 9; then
  echo "setup: another setup is running here, waiting for it"
  flock 9
fi
: >"$log"

step() { printf 'setup: [%s] %s\n' "$1" "$2"; }
fail() {
  if [ -s "$log" ]; then
    echo "setup: last lines of $log:" >&2
    tail -n 15 "$log" | sed 's/^/    /' >&2
  fi
  printf 'setup: error: %s\n' "$1" >&2
  exit 1
}
run() { printf '+ %s\n' "$*" >>"$log"; "$@" >>"$log" 2>&1 9>&-; }

as_root=()
need_root() {
  command -v apt-get >/dev/null || fail "packages are missing (${missing[*]}) and there is no apt-get: this set-up knows Debian 12"
  if [ "$(id -u)" != 0 ] && [ ${#as_root[@]} = 0 ]; then
    command -v sudo >/dev/null || fail "packages are missing (${missing[*]}): run this as root or install sudo"
    as_root=(sudo)
  fi
}
apt() { run "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=600 "$@"; }

# Sets `missing` to those of its arguments that are not installed.
find_missing() {
  missing=()
  local package
  for package; do
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null || true)" = installed ] || missing+=("$package")
  done
}

install_tools() {
  local number=$1 title=$2
  shift 2
  find_missing "$@"
  if [ ${#missing[@]} = 0 ]; then
    step "$number" "$title: present"
    return
  fi
  need_root
  step "$number" "$title: installing ${#missing[@]} packages (${missing[*]})"
  # An index that can't be fetched is no error yet: the ones that are there may be enough.
  apt update || step "$number" "$title: an index could not be refreshed, going on with what is there"
  apt install -y --no-install-recommends "${missing[@]}" || fail "could not install: ${missing[*]}"
}

# 32-bit Wine needs the libraries of both architectures in the same versions. When the i386 index of the security
# suite can't be read, the plain way fails on that; all from the base release then fits together.
install_wine() {
  local number=$1 title="32-bit Wine"
  find_missing "${wine_packages[@]}"
  if [ ${#missing[@]} = 0 ]; then
    step "$number" "$title: present"
    return
  fi
  need_root
  step "$number" "$title: installing"
  if ! dpkg --print-foreign-architectures | grep -qx i386; then
    run "${as_root[@]}" dpkg --add-architecture i386 || fail "could not add the architecture i386"
  fi
  apt update || step "$number" "$title: an index could not be refreshed, going on with what is there"
  if ! apt install -y --no-install-recommends "${missing[@]}"; then
    step "$number" "$title: the versions on offer don't fit together, taking all from the base release"
    local release preferences
    release=$(. /etc/os-release && echo "$VERSION_CODENAME")
    preferences=$(mktemp)
    chmod a+r "$preferences"
    printf 'Package: *\nPin: release n=%s\nPin-Priority: 1001\n\nPackage: *\nPin: release n=%s-security\nPin-Priority: 100\n' \
      "$release" "$release" >"$preferences"
    apt install -y -o "Dir::Etc::Preferences=$preferences" --allow-downgrades --no-install-recommends "${missing[@]}" ||
      { rm -f "$preferences"; fail "could not install: ${missing[*]}"; }
    rm -f "$preferences"
  fi
}

# The machine's own package sources again, as source-package sources.
write_source_lists() {
  local directory=$1 file name
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
    [ -f "$file" ] || continue
    name=$(basename "$file")
    grep -E '^deb[[:space:]]' "$file" | sed -E 's/^deb[[:space:]]/deb-src /' >"$directory/$name" || rm -f "$directory/$name"
  done
  for file in /etc/apt/sources.list.d/*.sources; do
    [ -f "$file" ] || continue
    sed -E 's/^Types:.*/Types: deb-src/' "$file" >"$directory/$(basename "$file")"
  done
}

fetch_libpng() {
  local work=$1
  mkdir -p "$work/lists/partial" "$work/sources" "$work/download"
  # Index and download are private to this step, so the machine's own lists stay as they are. The download is
  # checked by apt against the signed index.
  write_source_lists "$work/sources"
  local options=(-o Dir::Etc::sourcelist=/dev/null -o "Dir::Etc::sourceparts=$work/sources"
    -o "Dir::State::lists=$work/lists" -o "Dir::Cache::srcpkgcache=" -o "Dir::Cache::pkgcache="
    -o APT::Sandbox::User=root)
  run apt-get "${options[@]}" update || step "$2" "libpng for Windows: a source index could not be read, going on with what is there"
  # The newest version first; an older one when the mirror no longer, or not yet, has its files.
  local version got=no
  for version in $(apt-cache "${options[@]}" showsrc --only-source libpng1.6 2>>"$log" | awk '$1 == "Version:" {print $2}' | sort -Vru); do
    if (cd "$work/download" && run apt-get "${options[@]}" source --download-only "libpng1.6=$version"); then
      got=yes
      break
    fi
    rm -f "$work"/download/*
  done
  [ $got = yes ] || return 1
  local dsc
  dsc=$(ls "$work"/download/libpng1.6_*.dsc | tail -n 1)
  run dpkg-source --no-check -x "$dsc" "$work/libpng" || return 1
}

build_libpng() {
  local number=$1 deps=$root/build/deps stamp
  stamp=$deps/win32/libpng.stamp
  local recipe
  recipe=$(cat cmake/toolchain-win32.cmake cmake/libpng-win32.cmake | sha256sum | cut -c1-16)
  if [ -f "$deps/win32/lib/libpng.a" ] && [ -f "$deps/win32/include/png.h" ] && [ -d "$deps/src/libpng/contrib/pngsuite" ] &&
    [ "$(cat "$stamp" 2>/dev/null)" = "$recipe" ]; then
    step "$number" "libpng for Windows: present"
    return
  fi
  mkdir -p "$deps/src" "$deps/win32"
  if [ ! -d "$deps/src/libpng/contrib/pngsuite" ]; then
    step "$number" "libpng for Windows: fetching the source package"
    local work=$deps/src/fetch
    rm -rf "$work" "$deps/src/libpng"
    fetch_libpng "$work" "$number" || fail "could not fetch the source package of libpng"
    mv "$work/libpng" "$deps/src/libpng"
    rm -rf "$work"
  fi
  step "$number" "libpng for Windows: building"
  rm -rf "$deps/build-libpng" "$stamp"
  run cmake -S "$deps/src/libpng" -B "$deps/build-libpng" -G Ninja -C "$root/cmake/libpng-win32.cmake" \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchain-win32.cmake" -DCMAKE_INSTALL_PREFIX="$deps/win32" ||
    fail "could not configure libpng for Windows"
  run cmake --build "$deps/build-libpng" -j 2 || fail "could not build libpng for Windows"
  run cmake --install "$deps/build-libpng" || fail "could not install libpng into build/deps/win32"
  [ -f "$deps/win32/lib/libpng.a" ] || fail "libpng was built but build/deps/win32/lib/libpng.a is not there"
  rm -rf "$deps/build-libpng"
  echo "$recipe" >"$stamp"
}

install_tools 1/4 "compilers and libraries" "${native_packages[@]}"
install_tools 2/4 "Windows compiler and display tools" "${windows_packages[@]}"
install_wine 3/4
build_libpng 4/4
echo "setup: ready"
