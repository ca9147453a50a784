#!/bin/bash
# Nothing that tools/check-mutants has started goes on running: not what a test that takes too long
# has forked, nor what one leaves behind that crashes, nor anything when the tool itself is stopped.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
failed=0
if ! command -v python3 >/dev/null; then
  echo 'There is no python3 here'
  exit 0
fi
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT

# A stand-in for a test: leaves a child behind, writes its number to a file, does what else is said.
cat >"$scratch/forks" <<'FORKS'
#!/bin/bash
sleep 60 >/dev/null 2>&1 &
echo $! >"$1"
shift
"$@"
FORKS
# The tool's own way to run a test; prints the status.
cat >"$scratch/call" <<'CALL'
import importlib.machinery
import importlib.util
import signal
import sys

sys.dont_write_bytecode = True
loader = importlib.machinery.SourceFileLoader("tool", sys.argv[1])
tool = importlib.util.module_from_spec(importlib.util.spec_from_loader("tool", loader))
loader.exec_module(tool)
signal.signal(signal.SIGTERM, tool.stop)
print(tool.call(sys.argv[3:], float(sys.argv[2]))[0])
CALL
chmod +x "$scratch/forks"

call() { # call SECONDS FILE WHAT...
  exec python3 "$scratch/call" "$root/tools/check-mutants" "$1" "$scratch/forks" "$scratch/$2" \
    "${@:3}"
}
runs() { # runs FILE: the child lives; what has ended may still wait to be counted
  local state
  state=$(sed 's/.*) //' "/proc/$(cat "$scratch/$1")/stat" 2>/dev/null)
  [ -n "$state" ] && [ "${state%% *}" != Z ]
}
gone() {
  for _ in $(seq 50); do
    runs "$1" || return 0
    sleep 0.1
  done
  return 1
}
expect() { # expect WHAT CONDITION...
  local what=$1
  shift
  "$@" && return
  printf 'FAILED: %s\n' "$what"
  failed=1
}

status=$(call 1 late sleep 60)
expect 'a test that takes too long has no status' [ "$status" = None ]
expect 'its child ends with it' gone late

# shellcheck disable=SC2016 # the stand-in's own number
status=$(call 30 crash sh -c 'kill -SEGV $PPID; sleep 60')
expect 'a crash has its status' [ "$status" = -11 ]
expect 'what it leaves behind ends' gone crash

call 30 stopped sleep 60 >/dev/null &
tool=$!
for _ in $(seq 100); do
  [ ! -s "$scratch/stopped" ] || break
  sleep 0.1
done
expect 'a test runs while it may' runs stopped
kill -TERM $tool
wait $tool
expect 'the tool that is stopped tells so' [ $? -eq 143 ]
expect 'its test ends with it' gone stopped

[ $failed -eq 0 ] && echo 'mutants: nothing goes on running'
exit $failed
