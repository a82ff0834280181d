# What the scripts share: sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }

# need COMMAND-OR-FILE PACKAGE ...: installs the Debian packages unless the command or file is there.
need() {
  local wanted=$1
  shift
  if command -v "$wanted" >/dev/null || [[ $wanted == /* && -e $wanted ]]; then return; fi
  local root=()
  [ "$(id -u)" -eq 0 ] || root=(sudo)
  if ! command -v apt-get >/dev/null; then
    echo "Please install $* (for $wanted) and try again." >&2
    exit 1
  fi
  say "Installing $*"
  local apt=("${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600)
  "${apt[@]}" update
  "${apt[@]}" install -y --no-install-recommends "$@" >/dev/null
}

need_build_tools() {
  need c++ g++
  need cmake cmake
  need ninja ninja-build
}

# build PRESET [TARGET ...]
build() {
  local preset=$1
  shift
  cmake --preset "$preset" >/dev/null
  cmake --build --preset "$preset" ${*:+--target "$@"}
}
