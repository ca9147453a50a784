#!/bin/bash
# The tour must fail when a step does not happen. Stand-ins for the program and the pointer; no
# display is needed.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0
mkdir "$scratch/bin"
printf '#!/bin/sh\nexit 0\n' >"$scratch/bin/scrot"
# A press reaches the stand-in for the program as a line in a file.
printf '#!/bin/sh\necho "$@" >>"%s/presses"\n' "$scratch" >"$scratch/bin/xdotool"
# Opens, and ends at the first press.
cat >"$scratch/ends.x" <<EOT
#!/bin/bash
echo 'pane: Confirm display of lesson 1'
echo 'button   Question / Response  at 100 200 30 40 '
until [ -s "$scratch/presses" ]; do sleep 0.1; done
EOT
chmod +x "$scratch/bin"/* "$scratch/ends.x"

output=$(PATH=$scratch/bin:$PATH "$root/tools/tour" "$scratch/ends.x" "$root/share/starter" "$scratch/out" 2>&1)
status=$?
check() { # check WHAT CONDITION...
  local what=$1
  shift
  "$@" && return
  printf 'FAILED: %s (status %s)\n%s\n' "$what" "$status" "$output"
  failed=1
}
check 'a step that does not happen fails the tour' [ "$status" -eq 1 ]
check 'it says what was awaited' \
  grep -q 'awaited was: pane: Confirm learning vocabulary of lesson 1' <<<"$output"
check 'it says where all is' grep -q "are in $scratch/out" <<<"$output"
check 'the middle of the button is pressed' \
  [ "$(cat "$scratch/presses")" = 'mousemove 115 220 click 1' ]
check 'the files are a copy of the first lessons' \
  diff -r "$root/share/starter" "$scratch/out/files"

[ $failed -eq 0 ] && echo 'tour: a missing step is found'
exit $failed
