# shellcheck shell=bash
# The source folders and their files, as CMakeLists.txt lists them. To be sourced; the current
# directory is the root of the sources.

# Prints the folders, one per line, in the order of who may include whom.
source_folders() {
  sed -n 's/^mertu_folder(\([a-z0-9_]*\).*/\1/p' CMakeLists.txt
}

# Prints the files that need the window's libraries, as "folder/name" without an ending.
window_units() {
  sed -n 's/^mertu_folder(\([a-z0-9_]*\) UI \(.*\))/\1 \2/p' CMakeLists.txt |
    awk '{ for (k = 2; k <= NF; k++) print $1 "/" $k }'
  printf 'app/main\n'
}

# source_files [PATTERN...]: prints the files of all folders whose names match one of the patterns
# (*.h and *.cpp when there are none), sorted within their folder.
source_files() {
  local folder file pattern
  [ $# -gt 0 ] || set -- '*.h' '*.cpp'
  source_folders | while read -r folder; do
    for pattern; do
      # The pattern is meant to be expanded.
      # shellcheck disable=SC2231
      for file in "$folder"/$pattern; do
        [ ! -f "$file" ] || printf '%s\n' "$file"
      done
    done
  done
}
