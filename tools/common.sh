# shellcheck shell=bash disable=SC2034
# What ./run and ./test share; sourced with the project's root as the working directory.

# Debian packages, by the names that Debian 12 and 13 have in common.
build_packages=(
  g++ cmake ninja-build
  qt6-base-dev qt6-declarative-dev qt6-svg-dev libsqlitecpp-dev
  pkgconf libxcb1-dev libxcb-xfixes0-dev libxcb-xinput-dev
)
run_packages=(
  qml6-module-qtqml qml6-module-qtqml-models qml6-module-qtqml-workerscript
  qml6-module-qtquick qml6-module-qtquick-templates qml6-module-qtquick-window
  qt6-wayland fonts-dejavu-core
)
# A virtual display with a window manager and a session bus, and pictures of it.
display_packages=(xvfb openbox dbus-daemon xdotool imagemagick)
test_packages=(
  qml6-module-qttest tzdata valgrind mold
  python3 python3-gi gir1.2-atspi-2.0 at-spi2-core x11-utils
  # A Wayland compositor, keys for it, and pictures of it.
  sway wtype grim
  # Trays of both kinds.
  xfce4-panel xfconf trayer
  # The Debian package and what is in it.
  dpkg-dev file man-db desktop-file-utils appstream lintian
)
lint_packages=(shellcheck)
# With these, a Wayland compositor places the panel. Debian 12 has the first one for Qt 5 alone.
if grep -qx 'VERSION_CODENAME=trixie' /etc/os-release 2>/dev/null; then
  build_packages+=(liblayershellqtinterface-dev libwayland-dev)
fi
fuzz_packages=(clang libclang-rt-dev)
coverage_packages=(gcovr)
# The layout and the checks of C++ are a gate with this one version, which Debian 13 has no more.
if grep -qx 'VERSION_CODENAME=bookworm' /etc/os-release 2>/dev/null; then
  lint_packages+=(clang-format-14 clang-tidy-14)
fi

# What another distribution has to have, by Debian's names.
unchecked_packages=()

# What is built bears the time of the last change that its users were told of.
SOURCE_DATE_EPOCH=$(date -d "$(sed -n '/^ -- /{s/.*>  //p;q}' packaging/changelog)" +%s)
export SOURCE_DATE_EPOCH

# Most tests wait for something most of the time.
tests_at_once=$(($(nproc) + 2))

say() { printf '%s\n' "$*" >&2; }

# passing REGEX: copies the lines that do not match. On a terminal, the newest of those that do stands
# in the last line, so that one sees that it goes on.
passing() {
  local line shown='' clear='' width=80
  if [[ -t 2 ]]; then
    clear=$'\r\e[K'
    width=$(tput cols 2>/dev/null || echo "$width")
  fi
  while IFS= read -r line; do
    if [[ ! $line =~ $1 ]]; then
      printf '%s' "${shown:+$clear}" >&2
      shown=
      printf '%s\n' "$line"
    elif [[ $clear ]]; then
      shown=${line:0:width-1}
      printf '%s%s' "$clear" "$shown" >&2
    fi
  done
  printf '%s' "${shown:+$clear}" >&2
}

# quietly LOG COMMAND...: keeps the output of a command in LOG and shows it if the command fails.
quietly() {
  local log=$1 status
  shift
  mkdir -p "${log%/*}"
  set +e
  env LC_ALL=C.UTF-8 "$@" </dev/null 2>&1 | tee "$log" | passing ''
  status=${PIPESTATUS[0]}
  set -e
  if ((status != 0)); then
    grep -vE '^\[[0-9]+/[0-9]+\] ' "$log" >&2
    say "Failed ($status): $*"
  fi
  return "$status"
}

# What runs commands as root; nothing for root itself.
as_root=()

# apt LOG ARGUMENTS...: apt-get. Waits up to five minutes for whoever else installs packages, as a
# fresh machine's automatic upgrades do, and says so.
apt() {
  local log=$1 patience=300 told='' status
  shift
  mkdir -p "${log%/*}"
  SECONDS=0
  while :; do
    set +e
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 \
      apt-get -o DPkg::Lock::Timeout="$patience" "$@" </dev/null 2>&1 | tee "$log" |
      sed -un '/^Waiting for/ { s/\.*$/, for up to five minutes/; p; :rest; n; b rest }' >&2
    status=${PIPESTATUS[0]}
    set -e
    # This time-out is for dpkg's locks alone; for its others, apt-get gives up at once.
    if ((status == 0)) || ! grep -q 'Could not get lock' "$log" || ((SECONDS >= patience)); then
      break
    fi
    [[ $told ]] || say "Waiting, for up to five minutes: $(grep -m1 'Could not get lock' "$log")"
    told=yes
    sleep 2
  done
  if ((status != 0)); then
    cat "$log" >&2
    say "Failed ($status): apt-get $*"
  fi
  return "$status"
}

# require_packages PACKAGE...: installs those that are missing; needs rights only if some are.
require_packages() {
  local package installed missing=()
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
  apt build/packages-update.log update || true
  apt build/packages-install.log install --yes --no-install-recommends "${missing[@]}"
}

# configure PRESET: CMake runs only if the folder was not made here; from then on Ninja decides.
configure() {
  local folder=build/$1
  # A home in which nothing can be written is no reason not to build.
  [[ ${CCACHE_DIR-} || -w ${HOME-} ]] || export CCACHE_DISABLE=1
  if [[ ! -f $folder/build.ninja ]] ||
    ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$PWD" "$folder/CMakeCache.txt"; then
    ((${#unchecked_packages[@]} == 0)) ||
      say "This is no Debian, so look for these yourself: ${unchecked_packages[*]}"
    say "Building in $folder, which takes a few minutes the first time"
    quietly "$folder/configure.log" cmake --fresh --preset "$1"
  fi
}

# build PRESET [TARGET...]: with CMake and Ninja, in build/PRESET.
build() {
  local folder=build/$1 quiet=(--quiet)
  [[ ! -t 2 ]] || quiet=()
  configure "$1"
  # Qt's own tools write their results in the order of hash tables.
  QT_HASH_SEED=0 quietly "$folder/build.log" ninja -C "$folder" "${quiet[@]}" "${@:2}"
}
