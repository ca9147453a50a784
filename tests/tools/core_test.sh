#!/bin/bash
# The core without the window: where GTK, ALSA and libsndfile are not to be had, it is configured,
# built and tested all the same. Here they are hidden: pkg-config finds GLib alone, and whoever
# takes a header of the sound libraries gets a fault.
# core_test.sh [FOLDER...]: the folders whose tests are built and run; config alone, which meets a
# type of GTK, when none is named.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
[ $# -gt 0 ] || set -- config

# show_package NAME: lets pkg-config find a package and what it requires.
show_package() {
  local required
  [ ! -e "$scratch/packages/$1.pc" ] || return 0
  ln -s "$(pkg-config --variable=pcfiledir "$1")/$1.pc" "$scratch/packages/$1.pc"
  for required in $(pkg-config --print-requires --print-requires-private "$1" | cut -d' ' -f1); do
    show_package "$required"
  done
}
mkdir -p "$scratch/packages" "$scratch/hidden/alsa"
show_package glib-2.0
for header in alsa/asoundlib.h sndfile.h; do
  printf '#error "%s is hidden"\n' "$header" >"$scratch/hidden/$header"
done
export PKG_CONFIG_PATH='' PKG_CONFIG_LIBDIR=$scratch/packages
for package in gtk+-2.0 gdk-2.0 alsa sndfile; do
  if pkg-config --exists $package; then
    printf 'FAILED: %s can still be found\n' $package
    exit 1
  fi
done

cmake -S "$root" -B "$scratch/build" -G Ninja -DMERTU_GUI=OFF -DMERTU_TESTS=ON \
  -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS="-O0 -g0 -isystem $scratch/hidden" >"$scratch/log" ||
  { cat "$scratch/log"; exit 1; }
cmake --build "$scratch/build" -j 1 --target mertu "${@/#/test_}" >"$scratch/log" ||
  { cat "$scratch/log"; exit 1; }
for folder; do
  "$scratch/build/tests/test_$folder" --gtest_brief=1
done
echo 'core: it stands without the window'
