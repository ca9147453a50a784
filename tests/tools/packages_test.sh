#!/bin/bash
# What tools/packages.sh installs, and how, with stand-ins for the system's package manager.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0
mkdir "$scratch/bin"

stand_in() { # stand_in NAME: an executable of that name, its text from standard input
  { printf '#!/bin/bash\n'; cat; } >"$scratch/bin/$1"
  chmod +x "$scratch/bin/$1"
}
stand_in dpkg-query <<'TEXT'
grep -qx "${*: -1}" "$SCRATCH/installed" && printf installed
TEXT
stand_in apt-get <<'TEXT'
echo "apt-get $*" >>"$SCRATCH/calls"
TEXT
stand_in sudo <<'TEXT'
echo "sudo $1" >>"$SCRATCH/calls"
exec "$@"
TEXT
stand_in id <<'TEXT'
echo "$FAKE_USER"
TEXT

install_as() { # install_as USER PURPOSE...; sets output, status and calls
  : >"$scratch/calls"
  output=$(
    export SCRATCH=$scratch FAKE_USER=$1 PATH=$scratch/bin:$PATH
    shift
    . "$root/tools/packages.sh"
    install_missing "$@" 2>&1
  )
  status=$?
  calls=$(cat "$scratch/calls")
}
expect() { # expect WHAT CONDITION...
  local what=$1
  shift
  "$@" && return
  printf 'FAILED: %s (status %s)\n%s\ncalls:\n%s\n' "$what" "$status" "$output" "$calls"
  failed=1
}

(. "$root/tools/packages.sh" && packages_for build && packages_for tests && packages_for tour) |
  sort -u >"$scratch/all"

cp "$scratch/all" "$scratch/installed"
install_as 1000 build tests tour
expect 'nothing missing: nothing is said or done' [ -z "$output$calls" ]
expect 'nothing missing: no fault' [ "$status" -eq 0 ]

grep -vx -e cmake -e xvfb "$scratch/all" >"$scratch/installed"
install_as 0 build tests tour
expect 'it is said what is installed' [ "$output" = 'Installing what is missing: cmake xvfb' ]
expect 'the list is renewed once, then all is installed at once' [ "$calls" = \
  "apt-get -q update
apt-get -q install -y --no-install-recommends cmake xvfb" ]

install_as 1000 build
expect 'root is asked for only when something is missing' [ "$calls" = \
  "sudo apt-get
apt-get -q update
sudo env
apt-get -q install -y --no-install-recommends cmake" ]

stand_in apt-get <<'TEXT'
exit 100
TEXT
install_as 0 build
expect 'a failing package manager is a fault' [ "$status" -ne 0 ]
install_as 0 unheard-of
expect 'an unknown purpose is a fault' [ "$status" -ne 0 ]

[ $failed -eq 0 ] && echo 'packages: all rules hold'
exit $failed
