#!/bin/bash
# ./run's rules for the learner's directory, with a stand-in for the program.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0

# The stand-in: says where it was started; what else it does, STANDIN tells.
cat >"$scratch/standin.x" <<'STANDIN'
#!/bin/bash
echo "started in $PWD"
case ${STANDIN:-stands} in
  stands) echo 'Mertu is ready' ;;
  empty-line) echo 's= order unknown =-1' ; echo '   ' ; exit 0 ;;
  missing) echo 'Error file ./x.txt  does not exist stop' ; exit 1 ;;
  late) echo 'Mertu is ready'; echo 'WHAT_QR not existing s_alias=zz@@@'; exit 5 ;;
esac
STANDIN
chmod +x "$scratch/standin.x"

# run_it ARG...: ./run with the stand-in and a display of no account; sets output and status.
run_it() {
  output=$(MERTU_PROGRAM=$scratch/standin.x DISPLAY=:no HOME=$scratch/home \
    XDG_DATA_HOME=${XDG-} MERTU_HOME=${OWN-} "$root/run" "$@" 2>&1)
  status=$?
}

expect() { # expect WHAT CONDITION...
  local what=$1
  shift
  if ! "$@"; then
    printf 'FAILED: %s (status %s)\n%s\n' "$what" "$status" "$output"
    failed=1
  fi
}
said() { [[ $output == *"$1"* ]]; }
same_files() { diff -r "$1" "$2" >/dev/null; }
is_status() { [ "$status" -eq "$1" ]; }

# A missing directory is made and filled, and the program is started there.
run_it "$scratch/new/deep"
expect 'a missing directory is filled' same_files "$root/share/starter" "$scratch/new/deep"
expect 'it is started there' said "started in $scratch/new/deep"
expect 'the status is that of the program' is_status 0
expect 'no end before the window is told' [ "$(grep -c 'before its window' <<<"$output")" -eq 0 ]

# An empty directory is filled, also through a link.
mkdir "$scratch/empty"
ln -s empty "$scratch/link"
run_it "$scratch/link"
expect 'an empty directory is filled' same_files "$root/share/starter" "$scratch/empty"

# A directory with a mertu.conf is used untouched.
mkdir "$scratch/used"
printf 'Which_lesson :>\n<:\n' >"$scratch/used/mertu.conf"
cp -r "$scratch/used" "$scratch/used.before"
run_it "$scratch/used"
expect 'a used directory is left as it is' same_files "$scratch/used.before" "$scratch/used"
expect 'a used directory is started in' said "started in $scratch/used"

# Any other is left alone, with one line that says so and status 1.
mkdir "$scratch/other"
: >"$scratch/other/.hidden"
run_it "$scratch/other"
expect 'another directory is refused' is_status 1
expect 'one line says so' [ "$(wc -l <<<"$output")" -eq 1 ]
expect 'the line names it' said "$scratch/other"
expect 'nothing was put there' [ "$(ls -A "$scratch/other")" = .hidden ]
: >"$scratch/file"
run_it "$scratch/file"
expect 'a file is refused' is_status 1

# Without an argument: MERTU_HOME, else XDG_DATA_HOME, else the home directory.
OWN="$scratch/own home" run_it
expect 'MERTU_HOME is used' said "started in $scratch/own home"
XDG=$scratch/data run_it
expect 'XDG_DATA_HOME is used' said "started in $scratch/data/mertu"
run_it
expect 'the home directory is used' said "started in $scratch/home/.local/share/mertu"

# An end before the window stood is told with the last line, whatever the status.
STANDIN=empty-line run_it "$scratch/used"
expect 'a status of 0 is kept' is_status 0
expect 'an early end is told' said 'ended before its window stood (status 0)'
expect 'the last line is shown' [ "$(tail -n 1 <<<"$output")" = 's= order unknown =-1' ]
export STANDIN=missing
run_it "$scratch/used"
expect 'a status of 1 is kept' is_status 1
expect 'the last line is shown too' [ "$(tail -n 1 <<<"$output")" = 'Error file ./x.txt  does not exist stop' ]
export STANDIN=late
run_it "$scratch/used"
expect 'a late end keeps its status' is_status 5
expect 'a late end is not told as an early one' [ "$(grep -c 'before its window' <<<"$output")" -eq 0 ]
export STANDIN=stands

# What is not understood is refused.
run_it --nonsense
expect 'an unknown option is refused' is_status 1
run_it "$scratch/used" "$scratch/new"
expect 'two directories are refused' is_status 1

# A copy that fails halfway leaves nothing behind, directories included.
mkdir -p "$scratch/half/SOUND" "$scratch/filled"
: >"$scratch/half/SOUND/word.ogg"
. "$root/tools/learner-dir.sh"
output=$(fill_dir "$scratch/half" "$scratch/filled" 2>&1)
status=$?
expect 'a starter set without settings is a fault' [ "$status" -ne 0 ]
expect 'what was copied of it is taken away' [ -z "$(ls -A "$scratch/filled")" ]

[ $failed -eq 0 ] && echo 'run: all rules hold'
exit $failed
