# What the scripts share: sourced, not run.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\n== %s\n' "$*"; }

as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# need COMMAND-OR-FILE PACKAGE ...: installs the Debian packages unless the command or file is there.
need() {
  local wanted=$1
  shift
  if command -v "$wanted" >/dev/null || [[ $wanted == /* && -e $wanted ]]; then return; fi
  if ! command -v apt-get >/dev/null; then
    echo "Please install $* (for $wanted) and try again." >&2
    exit 1
  fi
  say "Installing $*"
  local apt=(as_root env DEBIAN_FRONTEND=noninteractive apt-get -qq -o DPkg::Lock::Timeout=600)
  "${apt[@]}" update
  "${apt[@]}" install -y --no-install-recommends "$@" >/dev/null
}

# make_system FOLDER ARCHITECTURE PACKAGE ...: puts a small Debian with these packages into the folder.
make_system() {
  local folder=$1 architecture=$2 suite archive
  shift 2
  need mmdebstrap mmdebstrap
  need arch-test arch-test
  say "Making a system in $folder"
  suite=$(. /etc/os-release && echo "$VERSION_CODENAME")
  archive=$(apt-get indextargets --format '$(REPO_URI)' 'Created-By: Packages' "Codename: $suite" 'Component: main')
  mkdir -p "$(dirname "$folder")"
  as_root rm -rf "$folder.new"
  as_root mmdebstrap --quiet --variant=minbase --architectures="$architecture" --include="$(tr ' ' , <<<"$*")" "$suite" \
    "$folder.new" "deb ${archive%%$'\n'*} $suite main"
  as_root mv "$folder.new" "$folder"
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

need_windows_tools() {
  need x86_64-w64-mingw32-g++-posix g++-mingw-w64-x86-64-posix
  need wine wine wine64
  need /usr/src/googletest googletest
}
