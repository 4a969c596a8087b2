# Shell functions that the scripts beside it share; sourced, never run.
# shellcheck shell=bash

# The root of the repository, whatever folder the caller stands in.
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

say() { printf '%s\n' "$*" >&2; }

die() {
  say "$*"
  exit 1
}

step() { printf '== %s\n' "$*"; }

# present THING: a command, or a file where THING holds a slash.
present() {
  if [[ $1 == */* ]]; then [[ -e $1 ]]; else command -v "$1" >/dev/null; fi
}

package_lists_are_fresh=

# Installs Debian packages without questions; false where this host or user cannot.
install_packages() {
  local as_root=(env DEBIAN_FRONTEND=noninteractive)
  command -v apt-get >/dev/null || return 1
  if [[ $(id -u) != 0 ]]; then
    sudo -n true 2>/dev/null || return 1
    as_root=(sudo -n "${as_root[@]}")
  fi
  say "installing $* ..."
  mkdir -p "$root/build"
  if [[ -z $package_lists_are_fresh ]]; then
    "${as_root[@]}" apt-get update -qq >"$root/build/apt.log" 2>&1 || true
    package_lists_are_fresh=yes
  fi
  "${as_root[@]}" apt-get install -y -qq --no-install-recommends "$@" \
    >>"$root/build/apt.log" 2>&1 || { tail -n 5 "$root/build/apt.log" >&2; return 1; }
}

# need THING PACKAGE...: ends the script when THING is missing and cannot be installed.
need() {
  present "$1" && return
  install_packages "${@:2}" && present "$1" && return
  die "missing: $1 (Debian packages: ${*:2})"
}

# want THING PACKAGE...: as need when CI is set; elsewhere a person may go on without THING.
want() {
  if [[ -n ${CI:-} ]]; then
    need "$@"
  elif ! present "$1" && ! { install_packages "${@:2}" && present "$1"; }; then
    say "missing: $1 (Debian packages: ${*:2}); the tests that use it are skipped"
  fi
}

need_build_tools() {
  need g++ g++
  need cmake cmake
  need ninja ninja-build
}

# quietly LOG COMMAND...: runs COMMAND with its output in LOG, which is shown only on failure.
quietly() {
  local log=$1
  shift
  mkdir -p "$(dirname "$log")"
  "$@" >"$log" 2>&1 && return
  cat "$log" >&2
  say "failed: $* (log: $log)"
  return 1
}

# build PRESET: configures and builds into build/PRESET, with the output in build/PRESET.log.
build() { quietly "$root/build/$1.log" configure_and_build "$1"; }

configure_and_build() {
  cd "$root" && cmake --preset "$1" && cmake --build --preset "$1"
}
