#!/bin/bash
# The Debian package: it is made, says what it needs, belongs to root, and lintian finds nothing.
# package_test.sh BUILD: the build to pack. Tools that are not there are told and passed over.
set -uo pipefail
build=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
failed=0

for tool in dpkg-deb dpkg-shlibdeps; do
  if ! command -v $tool >/dev/null; then
    printf 'There is no %s here: no package is made\n' $tool
    exit 0
  fi
done
expect() { # expect WHAT CONDITION...
  local what=$1
  shift
  "$@" && return
  printf 'FAILED: %s\n%s\n' "$what" "$output"
  failed=1
}

output=$(cd "$build" && cpack --config CPackConfig.cmake -B "$scratch" 2>&1)
expect 'a package is made' [ $? -eq 0 ]
package=$(find "$scratch" -maxdepth 1 -name 'mertu_*.deb')
output=$(dpkg-deb -f "$package" Depends 2>&1)
for needed in libgtk2.0-0 libasound2 libsndfile1 libc6 fonts-dejavu-core; do
  expect "it needs $needed" grep -qE "(^|, )$needed(t64)?( |,|\$)" <<<"$output"
done
output=$(dpkg-deb -c "$package")
expect 'all of it belongs to root' [ -z "$(grep -v ' root/root ' <<<"$output")" ]
expect 'it tells its licence' grep -q ' ./usr/share/doc/mertu/copyright$' <<<"$output"
expect 'it tells its changes' grep -q ' ./usr/share/doc/mertu/changelog.gz$' <<<"$output"
expect 'the launcher is on the path' grep -q '^-rwxr-xr-x .* ./usr/bin/mertu$' <<<"$output"
expect 'it has no script that runs while it is installed' \
  [ "$(dpkg-deb --ctrl-tarfile "$package" | tar t | sed 's|^\./||' | sort | xargs)" = 'control md5sums' ]
if command -v lintian >/dev/null; then
  output=$(lintian --allow-root --fail-on error,warning "$package" 2>&1)
  expect 'lintian finds nothing' [ $? -eq 0 ]
else
  printf 'There is no lintian here\n'
fi

[ $failed -eq 0 ] && echo 'package: all rules hold'
exit $failed
