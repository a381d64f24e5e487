# shellcheck shell=bash
# Sourced by the project's commands: installs Debian packages, quietly, and only those that are missing.

# install_packages PACKAGE...
install_packages() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'ok installed' || missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  echo "Installing: ${missing[*]}" >&2
  local as_root=()
  if [ "$(id -u)" -ne 0 ]; then
    command -v sudo >/dev/null || { echo "These packages are missing, and neither root nor sudo is there to install them." >&2; return 1; }
    as_root=(sudo)
  fi
  local log
  log=$(mktemp)
  if ! { "${as_root[@]}" apt-get update -qq &&
         "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"; } \
       >"$log" 2>&1 </dev/null; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# build_quietly DIR TARGET...: shows the output only if the build fails.
build_quietly() {
  local dir=$1 log
  shift
  log=$(mktemp)
  if ! cmake --build "$dir" --target "$@" >"$log" 2>&1 </dev/null; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# configure_quietly PRESET
configure_quietly() {
  local log
  log=$(mktemp)
  if ! cmake --preset "$1" -G Ninja >"$log" 2>&1 </dev/null; then
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

# What each part needs, for the scripts that source this file.
# shellcheck disable=SC2034
{
  PACKAGES_PROGRAM=(cmake g++ ninja-build libdtl-dev libicu-dev libpugixml-dev nlohmann-json3-dev zlib1g-dev)
  PACKAGES_DESKTOP=(qt6-base-dev libqscintilla2-qt6-dev libgl-dev)
  PACKAGES_TESTS=(clang libclang-rt-14-dev llvm libgtest-dev libbenchmark-dev fp-compiler fp-units-rtl fp-units-fcl binutils git python3 fish groff zsh)
  PACKAGES_LINT=(clang-format clang-tidy shellcheck pyflakes3)
  PACKAGES_WINDOWS=(dpkg-dev g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix googletest icoutils librsvg2-bin libz-mingw-w64-dev unzip wine wine64 xauth xvfb zip)
  PACKAGES_PACKAGE=(cmark-gfm dpkg-dev fakeroot file gzip lintian python3)
}
