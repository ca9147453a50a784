# shellcheck shell=bash
# Starting the program in the learner's directory, and telling her when it ends before its window
# stood. Shared by ./run and the installed `mertu`. To be sourced, learner-dir.sh too.

# tell PROGRAM TEXT: says the text on standard error; where no terminal shows it (a start from the
# menu), also in a small window, by the mertu-notice.x beside the program.
tell() {
  local notice
  notice=$(dirname -- "$1")/mertu-notice.x
  printf '%s\n' "$2" >&2
  [ -t 1 ] || [ -t 2 ] || [ ! -x "$notice" ] || "$notice" "$2"
}

# learner_dir_ready PROGRAM STARTER DIR: prepare_dir, with its refusal told as above.
learner_dir_ready() {
  local said
  if ! said=$(prepare_dir "$2" "$3" 2>&1); then
    tell "$1" "$said"
    return 1
  fi
  [ -z "$said" ] || printf '%s\n' "$said"
}

# launch PROGRAM DIR: runs the program in the directory and passes on what it prints. Returns its
# status, with
#   ended   early: before its window stood; no-display: so, because it cannot open the display;
#           late: its window stood
#   last    the last line it printed that is not blank, unless the window stood
# shellcheck disable=SC2034 # they are for the caller
launch() {
  local said line
  ended=early
  last=
  exec {said}< <(cd -- "$2" && exec "$1" 2>&1)
  # The program goes on when nobody reads its lines any more.
  trap '' PIPE
  # The lines are bytes: what is in them may be no text of this locale.
  local LC_ALL=C
  while IFS= read -r line <&"$said" || [ -n "$line" ]; do
    printf '%s\n' "$line" 2>/dev/null
    [[ $line != *[![:space:]]* ]] || last=$line
    [[ $line != *'annot open display'* ]] || ended=no-display
    if [[ $line == 'Mertu is ready'* ]]; then
      ended=late
      tee -p /dev/null <&"$said"
      break
    fi
  done
  trap - PIPE
  wait $!
}

# early_end STATUS LAST: the words by which an end before the window stood is told.
early_end() {
  printf 'Mertu ended before its window stood (status %s). The last line it printed:\n%s\n' \
    "$1" "${2:-(none)}"
}
