# shellcheck shell=bash
# The learner's directory: where it is, and how a new one is filled with the starter set.
# To be sourced:  . tools/learner-dir.sh

# learner_dir [DIR]: prints the directory to use: the argument, else $MERTU_HOME, else the one
# among the user's data.
learner_dir() {
  if [ -n "${1:-}" ]; then
    printf '%s\n' "$1"
  elif [ -n "${MERTU_HOME:-}" ]; then
    printf '%s\n' "$MERTU_HOME"
  else
    printf '%s\n' "${XDG_DATA_HOME:-$HOME/.local/share}/mertu"
  fi
}

# True when the directory can be read and holds nothing at all.
is_empty_dir() {
  local found
  found=$(find "$1/" -mindepth 1 -maxdepth 1 -print -quit 2>/dev/null) && [ -z "$found" ]
}

# fill_dir STARTER DIR: copies the files of the starter set and of the directories in it, mertu.conf
# last: a directory that has one is whole. When a copy fails, what was copied is taken away again.
fill_dir() {
  local names=()
  mapfile -d '' names < <(cd "$1" && find . -mindepth 1 -type f ! -path ./mertu.conf -printf '%P\0')
  names+=(mertu.conf)
  mkdir -p "$2" || return 1
  copy_files "$1" "$2" "${names[@]}" && return 0
  (cd "$2" && rm -f "${names[@]}" && find . -mindepth 1 -type d -empty -delete)
  return 1
}

# copy_files FROM TO NAME...: up to the first that cannot be copied; makes the directories named.
copy_files() {
  local from=$1 to=$2 name
  shift 2
  for name; do
    install -D -m 644 "$from/$name" "$to/$name" || return 1
  done
}

# prepare_dir STARTER DIR: a missing or empty directory is filled, one with a mertu.conf is left
# as it is; any other is left alone: one line says so, status 1.
prepare_dir() {
  if [ -f "$2/mertu.conf" ]; then
    return 0
  fi
  if [ -e "$2" ] || [ -L "$2" ]; then
    if ! is_empty_dir "$2"; then
      printf '%s holds no mertu.conf and is not empty: it is left alone\n' "$2"
      return 1
    fi
  fi
  fill_dir "$1" "$2" || {
    printf '%s cannot be filled with the first lessons\n' "$2"
    return 1
  }
  printf '%s is new: four first lessons were put there\n' "$2"
}
