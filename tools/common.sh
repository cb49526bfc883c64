# shellcheck shell=bash disable=SC2034
# What ./run and ./test share; sourced with the project's root as the working directory.

# Debian packages, by the names that Debian 12 and 13 have in common.
build_packages=(
  g++ cmake ninja-build
  qt6-base-dev qt6-declarative-dev qt6-svg-dev libsqlitecpp-dev
  pkgconf libxcb1-dev libxcb-xfixes0-dev
)
run_packages=(
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
  qml6-module-qtquick qml6-module-qtquick-templates qml6-module-qtquick-window
  qt6-wayland fonts-dejavu-core
)
# A virtual display with a window manager and a session bus, and pictures of it.
display_packages=(xvfb openbox dbus-daemon xdotool imagemagick)
test_packages=(
  qml6-module-qttest tzdata valgrind
  python3 python3-gi gir1.2-atspi-2.0 at-spi2-core x11-utils
  # A Wayland compositor, keys for it, and pictures of it.
  sway wtype grim
  # Trays of both kinds.
  xfce4-panel xfconf trayer
  # The Debian package and what is in it.
  dpkg-dev file man-db desktop-file-utils appstream lintian
)
# The checks of format and code are a gate with this one version, which Debian 13 has no more.
if grep -qx 'VERSION_CODENAME=bookworm' /etc/os-release 2>/dev/null; then
  test_packages+=(clang-format-14 clang-tidy-14)
fi

# What another distribution has to have, by Debian's names.
unchecked_packages=()

say() { printf '%s\n' "$*" >&2; }

# quietly LOG COMMAND...: keeps the output of a command in LOG and shows it if the command fails.
quietly() {
  local log=$1 status=0
  shift
  mkdir -p "${log%/*}"
  "$@" >"$log" 2>&1 </dev/null || status=$?
  if ((status != 0)); then
    cat "$log" >&2
    say "Failed ($status): $*"
  fi
  return "$status"
}

# require_packages PACKAGE...: installs those that are missing; needs rights only if some are.
require_packages() {
  local package installed missing=() as_root=()
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    unchecked_packages=("$@")
    return 0
  fi
  installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
  for package; do
    [[ $'\n'$installed$'\n' == *$'\n'"installed $package"$'\n'* ]] || missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      say "Packages are missing, and there is no sudo to install them. As root:" \
        "apt-get install --no-install-recommends ${missing[*]}"
      return 1
    fi
    as_root=(sudo)
  fi
  say "Installing ${missing[*]}"
  quietly build/packages-update.log "${as_root[@]}" apt-get update || true
  quietly build/packages-install.log "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install --yes --no-install-recommends "${missing[@]}"
}

# build PRESET: CMake runs only if the folder was not made here; from then on Ninja decides.
build() {
  local folder=build/$1
  if [[ ! -f $folder/build.ninja ]] ||
    ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
    ((${#unchecked_packages[@]} == 0)) ||
      say "This is no Debian, so look for these yourself: ${unchecked_packages[*]}"
    say "Building in $folder, which takes a few minutes the first time"
    quietly "$folder/configure.log" cmake --fresh --preset "$1"
  fi
  quietly "$folder/build.log" ninja -C "$folder" --quiet
}
