# shellcheck shell=bash disable=SC2034
# Sourced by prepare.sh on macOS: what the project needs of Homebrew and of Apple, in place of Debian's packages.

formulae=(cmake ninja qt@5)

# missingFormulae NAME...: those that are not installed, one a line
missingFormulae() {
  local name
  for name in "$@"; do
    brew list --versions "$name" >/dev/null 2>&1 || echo "$name"
  done
}

# installPackages WHY ...: installs the formulae that are missing, and lets CMake find Qt; sets newPackages
installPackages() {
  local why=$1 name prefix
  newPackages=()
  if ! xcode-select -p >/dev/null 2>&1; then
    say "$why needs Apple's compiler: run xcode-select --install"
    return 1
  fi
  if ! command -v brew >/dev/null; then
    say "$why needs ${formulae[*]}; Homebrew, which is not here, has them under these names"
    command -v cmake >/dev/null && command -v ninja >/dev/null
    return
  fi
  while IFS= read -r name; do
    newPackages+=("$name")
  done < <(missingFormulae "${formulae[@]}")
  if [ ${#newPackages[@]} != 0 ]; then
    say "installing the Homebrew formulae that $why needs: ${newPackages[*]}"
    quietly brew install "${newPackages[@]}" || return
  fi
  # Homebrew links no formula of an older version.
  prefix=$(brew --prefix qt@5)
  export CMAKE_PREFIX_PATH=$prefix${CMAKE_PREFIX_PATH:+:$CMAKE_PREFIX_PATH}
}

# Homebrew's Qt is for this processor and for this macOS. Warnings are those of whichever Xcode is here.
configureOptions=("-DCMAKE_OSX_ARCHITECTURES=$(uname -m)" -DNORVEX_WARNINGS_AS_ERRORS=OFF)
if [ -z "${MACOSX_DEPLOYMENT_TARGET:-}" ]; then
  MACOSX_DEPLOYMENT_TARGET=$(sw_vers -productVersion | cut -d . -f 1,2)
  export MACOSX_DEPLOYMENT_TARGET
fi

processors() {
  sysctl -n hw.ncpu
}

# Locks the file behind a descriptor, as long as it is open.
lockDescriptor() {
  perl -e 'open(LOCK, ">&=$ARGV[0]") && flock(LOCK, 2) or die "lock: $!\n"' "$1"
}
