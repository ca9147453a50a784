#!/bin/bash
# The checks of the sources must be able to fail: each is given a small tree with one fault.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0

# A sound tree of two folders, one core and one window file, one oddity.
fresh_tree() {
  rm -rf "$scratch/tree"
  mkdir -p "$scratch/tree"/{util,quiz,sound,score,tests,docs}
  cd "$scratch/tree" || exit 1
  printf '%s\n' 'mertu_folder(util)' 'mertu_folder(score)' 'mertu_folder(sound)' \
    'mertu_folder(quiz UI pane)' >CMakeLists.txt
  printf '#include <stdio.h>\nint util_a(FILE *fp);\n' >util/a.h
  printf '#include "util/a.h"\n\n#include <glib.h>\nint util_a(FILE *) { return 0; }\n' >util/a.cpp
  printf '#include "util/a.h"\nint pane();\n' >quiz/pane.h
  printf '#include "quiz/pane.h"\n\n#include <gtk/gtk.h>\n// QUIRK odd one: it is odd, and\n// meant. Test:\n// Pane.IsOdd\nint pane() { return 1; }\n' >quiz/pane.cpp
  printf 'TEST(Pane,\n     IsOdd) {\n}\n' >tests/pane_test.cpp
  printf '# Oddities\n\n### odd one\n\nIt is odd. Held by `Pane.IsOdd`.\n' >docs/quirks.md
}

finds() { # finds WHAT TOOL TEXT: the tool fails on the tree and says the text
  local output
  if output=$("$root/tools/$2" "$scratch/tree" 2>&1) || [[ $output != *"$3"* ]]; then
    printf 'FAILED: %s does not find %s:\n%s\n' "$2" "$1" "$output"
    failed=1
  fi
}
passes() { # passes TOOL
  local output
  if ! output=$("$root/tools/$1" "$scratch/tree" 2>&1); then
    printf 'FAILED: %s finds a fault in a sound tree:\n%s\n' "$1" "$output"
    failed=1
  fi
}

fresh_tree
passes check-includes
passes check-quirks
if pkg-config --exists gtk+-2.0 alsa sndfile; then
  passes check-headers
fi

fresh_tree
printf '#include "quiz/pane.h"\n' >util/b.h
finds 'a look to the right' check-includes 'util/b.h:1: util may not look right'
finds 'a window header in the core' check-includes 'util/b.h:1: a core file takes the window header'
fresh_tree
printf '#include "a.h"\n' >util/b.h
finds 'a name without its folder' check-includes 'util/b.h:1: "a.h" is not named from the root'
fresh_tree
printf '#include <gtk/gtk.h>\n' >quiz/core.h
finds 'GTK in the core' check-includes 'quiz/core.h:1: a core file takes <gtk/gtk.h>'
fresh_tree
printf '#include "util/c.h"\n' >quiz/core.h
finds 'a header that is not there' check-includes 'quiz/core.h:1: there is no util/c.h'
fresh_tree
: >score/s.h
printf '#include "score/s.h"\n' >sound/t.h
finds 'sound that knows score' check-includes 'sound/t.h:1: sound may not know score'
fresh_tree
: >util/b.h
printf '#include "util/a.h"\n#include "util/b.h"\n' >util/b.cpp
finds 'an own header that comes late' check-includes 'util/b.cpp:1: its own header comes first'

fresh_tree
printf '// QUIRK other one: no. Test: Pane.IsOdd\n' >util/b.h
finds 'an oddity that the page lacks' check-quirks 'util/b.h:1: "other one" is not in docs/quirks.md'
fresh_tree
printf '// QUIRK odd one: no test is named\n' >util/b.h
finds 'an oddity without a test' check-quirks '"odd one" names no test'
fresh_tree
printf 'TEST(Pane, IsEven) {\n}\n' >tests/pane_test.cpp
finds 'a test that is not there' check-quirks 'names the test Pane.IsOdd, which is not there'
fresh_tree
printf '\n### gone\n\nNo more.\n' >>docs/quirks.md
finds 'a page entry without code' check-quirks 'no code is marked "gone"'
fresh_tree
sed -i 's/Pane.IsOdd/Pane.Other/' docs/quirks.md
finds 'a page that names another test' check-quirks '"odd one" does not name the test Pane.IsOdd'

if pkg-config --exists gtk+-2.0 alsa sndfile; then
  fresh_tree
  printf 'size_t needs_a_header();\n' >util/b.h
  finds 'a header that does not compile alone' check-headers 'util/b.h:1'
  fresh_tree
  printf '#include <gtk/gtk.h>\n' >quiz/core.h
  finds 'a core header that takes GTK' check-headers 'quiz/core.h:1'
fi

[ $failed -eq 0 ] && echo 'checks: every fault is found'
exit $failed
