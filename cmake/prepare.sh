# shellcheck shell=bash disable=SC2034
# Sourced by run and test: what the project needs of Debian, and its release build. Nothing is printed on standard
# output, and on standard error only what has to be known. prepareMac.sh puts macOS's ways in place of some of it; what
# both share runs on macOS's bash 3.2.

sourceFolder=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
buildFolder=$sourceFolder/build/release

# One line a purpose; what a package needs itself is not listed. The packages' test also runs lintian, which brings 150
# packages with it, where somebody has installed it.
buildPackages=(
  g++ cmake ninja-build pkg-config
  qtbase5-dev libqt5opengl5-dev
  libudev-dev libplist-dev
  libxcb1-dev
)
testPackages=(
  qtbase5-private-dev python3
  xvfb xauth libgl1-mesa-dri
  clang-format file dpkg-dev
  umockdev libumockdev-dev
  dbus-daemon make
  clang libc++-dev libc++abi-dev musl-dev
  libgnustep-gui-dev libobjc-12-dev
  python3-jsonschema jq
  desktop-file-utils appstream
  qttools5-dev-tools
)
tidyPackages=(clang-tidy libbenchmark-dev)

say() {
  printf '%s: %s\n' "${0##*/}" "$*" >&2
}

# Runs a command whose output matters only when it fails. It is kept then.
quietly() {
  local log status=0
  log=$(mktemp)
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if [ $status != 0 ]; then
    cat "$log" >&2
    say "failed: $*; its output is in $log"
  else
    rm -f "$log"
  fi
  return $status
}

asRoot() {
  if [ "$(id -u)" = 0 ]; then
    "$@"
  else
    sudo "$@"
  fi
}

# missingPackages NAME...: those that are not installed, one a line
missingPackages() {
  local installed name
  installed=$(dpkg-query -W -f '${Package} ${db:Status-Status}\n' "$@" 2>/dev/null || true)
  for name in "$@"; do
    case $'\n'$installed$'\n' in
      *$'\n'"$name installed"$'\n'*) ;;
      *) echo "$name" ;;
    esac
  done
}

# updatePackageLists LOG: waits up to 300 seconds for the lock of the lists, which DPkg::Lock::Timeout does not concern
updatePackageLists() {
  local seconds
  for ((seconds = 0; ; seconds += 2)); do
    asRoot env LC_ALL=C apt-get update >"$1" 2>&1 </dev/null && return 0
    if ! grep -q 'Could not get lock' "$1" || [ $seconds = 300 ]; then
      return 1
    fi
    [ $seconds != 0 ] || say 'waiting for another program that updates the package lists'
    sleep 2
  done
}

# installPackages WHY NAME...: installs what is missing; sets newPackages
installPackages() {
  local why=$1
  shift
  newPackages=()
  # Another system has other names for these; CMake tells what it does not find.
  command -v dpkg-query >/dev/null || return 0
  local name
  while IFS= read -r name; do
    newPackages+=("$name")
  done < <(missingPackages "$@")
  [ ${#newPackages[@]} != 0 ] || return 0
  if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
    say "$why needs these Debian packages, which only root can install: ${newPackages[*]}"
    return 1
  fi
  say "installing the Debian packages that $why needs: ${newPackages[*]}"
  local log updated=yes
  log=$(mktemp)
  # The packages may be there although a lock or a broken source keeps the lists as they are.
  updatePackageLists "$log" || updated=no
  if quietly asRoot env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends --no-remove \
    -o DPkg::Lock::Timeout=300 "${newPackages[@]}"; then
    rm -f "$log"
    return 0
  fi
  [ $updated = yes ] || say "before that, apt-get update failed; its output is in $log"
  return 1
}

configureOptions=()

processors() {
  nproc
}

# Locks the file behind a descriptor, as long as it is open.
lockDescriptor() {
  flock "$1"
}

if [ "$(uname -s)" = Darwin ]; then
  # shellcheck source=cmake/prepareMac.sh
  . "$sourceFolder/cmake/prepareMac.sh"
fi

# buildRelease TARGET...: brings the release build up to date, for one caller at a time
buildRelease() {
  mkdir -p "$buildFolder"
  if [ -t 2 ] && [ ! -e "$buildFolder/bin" ]; then
    say 'building, which takes a minute or two the first time'
  fi
  (
    lockDescriptor 9
    cd "$sourceFolder" || exit
    if [ ! -f "$buildFolder/CMakeCache.txt" ]; then
      # bash 3.2 takes an empty array for an unset variable.
      quietly cmake --preset release ${configureOptions[@]+"${configureOptions[@]}"}
    elif [ ! -f "$buildFolder/cmake_install.cmake" ] || [ ${#newPackages[@]} != 0 ]; then
      # A package that was not there when CMake looked for it is found only when it looks again. A folder that was
      # configured by hand keeps its generator and its settings.
      quietly cmake "$buildFolder"
    fi
    quietly cmake --build "$buildFolder" --parallel "$(processors)" --target "$@"
  ) 9>"$buildFolder/.lock"
}
