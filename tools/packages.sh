# shellcheck shell=bash
# What Mertu needs from the system, per purpose, and how the missing part is installed.
# To be sourced:  . tools/packages.sh; install_missing build tests

# Prints the Debian packages of one purpose, one per line.
packages_for() {
  case $1 in
    build) printf '%s\n' g++ cmake ninja-build pkg-config libgtk2.0-dev libasound2-dev \
      libsndfile1-dev fonts-dejavu-core ;;
    tests) printf '%s\n' libgtest-dev libgmock-dev libxtst-dev xvfb xauth ;;
    tour) printf '%s\n' xvfb xauth xdotool scrot ;;
    validators) printf '%s\n' desktop-file-utils appstream mandoc man-db dpkg-dev file ;;
    package-check) printf '%s\n' lintian ;;
    bench) printf '%s\n' libbenchmark-dev valgrind ;;
    pictures) printf '%s\n' pngquant optipng ;;
    checks) printf '%s\n' python3 gcovr clang-tidy cppcheck valgrind git ;;
    sounds) printf '%s\n' espeak-ng sox libsox-fmt-base ;;
    icons) printf '%s\n' librsvg2-bin ;;
    fresh-machine) printf '%s\n' debootstrap git ;;
    *)
      printf 'packages_for: no purpose is called %s\n' "$1" >&2
      return 1
      ;;
  esac
}

# True when the package is installed.
is_installed() {
  [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

# Prints the packages of the purposes that are not installed, each once.
missing_packages() {
  local purpose package
  for purpose; do
    packages_for "$purpose" || return 1
  done | sort -u | while read -r package; do
    is_installed "$package" || printf '%s\n' "$package"
  done
}

# Runs a command as root: as it is for root, through sudo for anyone else.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then
    "$@"
  elif command -v sudo >/dev/null; then
    sudo "$@"
  else
    printf 'Root is needed for: %s\nRun it as root and start again.\n' "$*" >&2
    return 1
  fi
}

# Installs what is missing for the purposes; says what. Nothing is asked and nothing is touched
# when nothing is missing. Where the system is not Debian's, says what should be there and goes on.
install_missing() {
  local missing
  if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
    printf 'No apt-get here; what is needed goes by these names on Debian: %s\n' \
      "$(for purpose; do packages_for "$purpose"; done | sort -u | tr '\n' ' ')"
    return 0
  fi
  missing=$(missing_packages "$@") || return 1
  [ -n "$missing" ] || return 0
  # Package names hold no blanks: the splitting is meant.
  # shellcheck disable=SC2086
  set -- $missing
  printf 'Installing what is missing: %s\n' "$*"
  as_root apt-get -q update || return 1
  as_root env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "$@"
}
