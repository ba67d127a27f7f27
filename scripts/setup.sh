# Sourced by ./run, ./test and ./bench: installs what is missing and builds. Every way to fail ends
# in one clear line on standard error.
# shellcheck shell=bash

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
# shellcheck source=scripts/packages.sh
. "$root/scripts/packages.sh"

# Two builds of one file in different folders are one entry of the compiler's cache.
export CCACHE_BASEDIR="$root" CCACHE_NOHASHDIR=1

fail() {
  echo "${program:-orvane}: $*" >&2
  exit 1
}

missing_packages() {
  local package
  for package in "$@"; do
    dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
      echo "$package"
  done
}

# The prefix that makes a command run as root; fails where nothing does.
as_root() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  else
    sudo -n "$@"
  fi
}

# install_packages NAME…: installs those that are missing, by name.
install_packages() {
  command -v dpkg-query >/dev/null || fail "this set-up knows Debian's packages only, and dpkg-query is not here"
  local missing log
  mapfile -t missing < <(missing_packages "$@")
  [ ${#missing[@]} -gt 0 ] || return 0
  if [ "$(id -u)" != 0 ] && ! sudo -n true 2>/dev/null; then
    fail "packages are missing and there is no root to install them with; run: apt-get install ${missing[*]}"
  fi
  mkdir -p "$root/build"
  log="$root/build/packages.log"
  echo "Installing ${#missing[@]} packages: ${missing[*]}"
  as_root apt-get update >"$log" 2>&1 || true # old lists may do; what follows tells
  as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends \
    "${missing[@]}" >>"$log" 2>&1 || fail "the packages could not be installed: $(grep -m1 '^E:' "$log" || echo "see build/packages.log")"
}

# build_preset PRESET [TARGET…]: configures when needed and builds into build/PRESET. Clang is
# taken where CXX says so.
build_preset() {
  local preset=$1 log
  shift
  command -v "${CXX:-c++}" >/dev/null || fail "there is no C++ compiler (${CXX:-c++})"
  log="$root/build/$preset.log"
  mkdir -p "$root/build/$preset"
  if [ ! -f "$root/build/$preset/build.ninja" ]; then
    (cd "$root" && cmake --preset "$preset") >"$log" 2>&1 ||
      { tail -n 20 "$log" >&2; fail "the build could not be configured; see build/$preset.log"; }
  fi
  echo "Building ($preset)"
  ninja -C "$root/build/$preset" "$@" >"$log" 2>&1 ||
    { grep -A15 -m3 -E ' error: |^FAILED' "$log" >&2; fail "the build failed; see build/$preset.log"; }
}
