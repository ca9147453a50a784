#!/bin/bash
# What an installation holds, and the launcher's rules, with a stand-in for the program.
# install_test.sh BUILD: the build to install; a display for the programs themselves.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
build=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0
prefix=$scratch/prefix
lib=$prefix/lib/mertu

expect() { # expect WHAT CONDITION...
  local what=$1
  shift
  "$@" && return
  printf 'FAILED: %s (status %s)\n%s\n' "$what" "$status" "$output"
  failed=1
}
said() { [[ $output == *"$1"* ]]; }
silent_about() { [[ $output != *"$1"* ]]; }
is_status() { [ "$status" -eq "$1" ]; }
lines() { [ "$(wc -l <<<"$output")" -eq "$1" ]; }
notices() { [ "$(cat "$scratch/notices" 2>/dev/null)" = "$1" ]; }

output=$(cmake --install "$build" --prefix "$prefix" 2>&1)
status=$?
expect 'it installs' is_status 0
for file in bin/mertu lib/mertu/{mertu.x,mertu-notice.x,launch.sh,learner-dir.sh} \
  share/doc/mertu/{README.md,CHANGELOG.md,LICENSE,docs/quirks.md} \
  share/man/{man1/mertu.1,man5/mertu.conf.5,man5/mertu-dictionary.5}.gz \
  share/applications/org.mertu.mertu.desktop share/metainfo/org.mertu.mertu.metainfo.xml \
  share/icons/hicolor/{scalable/apps/org.mertu.mertu.svg,48x48/apps/org.mertu.mertu.png}; do
  expect "$file is installed" [ -s "$prefix/$file" ]
done
expect 'the starter set is installed' \
  diff -r "$root/share/starter" "$prefix/share/mertu/starter"
expect 'what belongs to the Debian package is not' [ ! -e "$prefix/share/doc/mertu/copyright" ]
expect 'no script names the place it was built at' \
  [ -z "$(grep -lrF "$root" "$prefix/bin" "$lib"/*.sh)" ]

# The programs themselves: the window stands, and the notice stands until it is closed.
if [ -n "${DISPLAY:-}" ]; then
  (cd / && MERTU_HOME=$scratch/real exec "$prefix/bin/mertu" >"$scratch/real.out" 2>&1) &
  launcher=$!
  for _ in $(seq 300); do
    grep -q '^Mertu is ready' "$scratch/real.out" && break
    kill -0 "$launcher" 2>/dev/null || break
    sleep 0.1
  done
  output=$(cat "$scratch/real.out")
  expect 'the installed program opens its window' grep -q '^Mertu is ready' "$scratch/real.out"
  expect 'it works in the directory named' test -n "$(ls "$scratch/real/IDX1")"
  for child in $(cat "/proc/$launcher/task/$launcher/children"); do
    [ "$(cat "/proc/$child/comm")" != mertu.x ] || kill "$child"
  done
  wait "$launcher"
  output=$(timeout 1.5 "$lib/mertu-notice.x" $'some words \351' 2>&1)
  status=$?
  expect 'a notice stands until it is closed' is_status 124
fi
output=$(DISPLAY=:no "$lib/mertu-notice.x" 'some words' 2>&1)
status=$?
expect 'no notice without a display' is_status 1

# The stand-in: says where it was started; what else it does, STANDIN tells.
rm "$lib"/*.x
cat >"$lib/mertu.x" <<'STANDIN'
#!/bin/bash
echo "started in $PWD by $0"
case ${STANDIN:-stands} in
  stands) echo 'Mertu is ready' ;;
  goes-on)
    echo 'Mertu is ready'
    sleep 0.5
    for _ in $(seq 20); do echo 'one more line'; done
    echo whole >"$PWD/went_on"
    ;;
  empty-line) echo 's= order unknown =-1' ; echo '   ' ; exit 0 ;;
  bytes) printf 'a\303\ns=\351t\351 order unknown =-1' ; exit 0 ;;
  no-display) echo 'mertu.x: cannot open display: :no' >&2; exit 1 ;;
  silent) exec 1>&- 2>&-; exit 32 ;;
  late) echo 'Mertu is ready'; echo 'WHAT_QR not existing s_alias=zz@@@'; exit 5 ;;
  killed) kill -9 $$ ;;
esac
STANDIN
cat >"$lib/mertu-notice.x" <<NOTICE
#!/bin/bash
printf '%s' "\$1" >"$scratch/notices"
NOTICE
chmod +x "$lib"/*.x

# start ARG...: the launcher without a terminal; sets output, status and the notices.
start() {
  rm -f "$scratch/notices"
  output=$(cd "$scratch" && MERTU_HOME=${OWN-} XDG_DATA_HOME=${XDG-} HOME=$scratch/home \
    DISPLAY=${SCREEN-:no} "${LAUNCHER:-$prefix/bin/mertu}" "$@" 2>&1)
  status=$?
}
# start_on_terminal: the same on a terminal.
start_on_terminal() {
  rm -f "$scratch/notices"
  output=$(cd "$scratch" && MERTU_HOME=$scratch/used DISPLAY=:no \
    script -qec "$prefix/bin/mertu" /dev/null </dev/null 2>&1)
  status=$?
}

# Where it starts.
start "$scratch/new/deep"
expect 'a missing directory is filled' diff -r "$root/share/starter" "$scratch/new/deep"
expect 'it is started there' said "started in $scratch/new/deep by $lib/mertu.x"
expect 'the status is that of the program' is_status 0
expect 'no end before the window is told' silent_about 'before its window'
mkdir -p "$scratch/used" "$scratch/-"
printf 'Which_lesson :>\n<:\n' >"$scratch/used/mertu.conf"
cp -r "$scratch/used" "$scratch/used.before"
CDPATH=$scratch/new start used
expect 'a directory may be named from here' said "started in $scratch/used "
expect 'a used directory is left as it is' diff -r "$scratch/used.before" "$scratch/used"
start ./-
expect 'a directory may have an odd name' said "started in $scratch/- "
OWN="$scratch/own home" start
expect 'MERTU_HOME is used' said "started in $scratch/own home "
XDG=$scratch/data start
expect 'XDG_DATA_HOME is used' said "started in $scratch/data/mertu "
start
expect 'the home directory is used' said "started in $scratch/home/.local/share/mertu "
ln -s "$prefix/bin/mertu" "$scratch/link"
LAUNCHER=$scratch/link start "$scratch/used"
expect 'a link starts it, too' said "by $lib/mertu.x"

# What is refused: told by one line, and by a notice where there is no terminal.
mkdir "$scratch/other"
: >"$scratch/other/.hidden"
start other
expect 'another directory is refused' is_status 1
expect 'one line says so' lines 1
expect 'a notice says so, too' notices "$output"
expect 'nothing was put there' [ "$(ls -A "$scratch/other")" = .hidden ]
SCREEN='' start "$scratch/untouched"
expect 'no display is a fault' is_status 1
expect 'no display is told in one line' [ "$output" = \
  'Mertu needs a display, and there is none here (DISPLAY is not set).' ]
expect 'no directory was made' [ ! -e "$scratch/untouched" ]
STANDIN=no-display start used
expect 'a display that does not open is told' said 'Mertu cannot open the display :no.'
expect 'it is no early end' silent_about 'before its window'
expect 'its status is kept' is_status 1

# An end before the window stood, whatever the status.
STANDIN=empty-line start used
early=$'Mertu ended before its window stood (status 0). The last line it printed:\ns= order unknown =-1'
expect 'a status of 0 is kept' is_status 0
expect 'an early end is told' said "$early"
expect 'without a terminal, in a notice' notices "$early"
STANDIN=empty-line start_on_terminal
expect 'on a terminal it is told, too' said 'before its window stood (status 0)'
expect 'on a terminal there is no notice' [ ! -e "$scratch/notices" ]
LC_ALL=C.UTF-8 STANDIN=bytes start used
expect 'a last line without an end is shown as it is' \
  notices $'Mertu ended before its window stood (status 0). The last line it printed:\ns=\351t\351 order unknown =-1'
STANDIN=silent start used
expect 'the status of a silent end is told' said "(status 32)"
expect 'it is kept' is_status 32
STANDIN=killed start used
expect 'a killed program is told' said '(status 137)'
STANDIN=late start used
expect 'a late end keeps its status' is_status 5
expect 'a late end is not told as an early one' silent_about 'before its window'
expect 'a late end has no notice' [ ! -e "$scratch/notices" ]
(cd "$scratch" && STANDIN=goes-on DISPLAY=:no "$prefix/bin/mertu" used | head -n 1) >/dev/null
for _ in $(seq 50); do [ -e "$scratch/used/went_on" ] && break; sleep 0.1; done
expect 'the program goes on when nobody reads what it says' [ -s "$scratch/used/went_on" ]

# The options.
start --help
expect 'help is shown' said 'mertu [DIR]'
expect 'help is no fault' is_status 0
start --version
expect 'the version is that of the project' \
  [ "$output" = "mertu $(sed -n 's/^project(Mertu VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt")" ]
start --nonsense
expect 'an unknown option is refused' is_status 1
start used other
expect 'two directories are refused' is_status 1

[ $failed -eq 0 ] && echo 'install: all rules hold'
exit $failed
