#!/bin/bash
# What the desktop and man read of Mertu: by the tools of those who made the rules, and against the
# sources. A tool that is not there is told and passed over.
set -uo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd -P)
cd "$root/packaging" || exit 1
failed=0

fault() {
  printf 'FAILED: %s\n' "$*"
  failed=1
}
valid() { # valid TOOL ARG...: passes, whatever it says
  local output
  if ! command -v "$1" >/dev/null; then
    printf 'There is no %s here\n' "$1"
    return 0
  fi
  output=$("$@" 2>&1) || fault "$*"$'\n'"$output"
}
silent() { # silent COMMAND...: says nothing
  local output
  output=$("$@" 2>&1)
  [ -z "$output" ] || fault "$*"$'\n'"$output"
}
lint() { # what mandoc says of a page; whether other pages are installed does not matter
  command -v mandoc >/dev/null || return 0
  mandoc -T lint "$1" | grep -v 'referenced manual not found: Xr mertu'
}
format() { # what groff says of a page
  command -v man >/dev/null || return 0
  # shellcheck disable=SC2069 # the warnings alone
  LC_ALL=C.UTF-8 MANROFFSEQ='' MANWIDTH=80 man --warnings -E UTF-8 -l -Tutf8 -Z "$1" 2>&1 >/dev/null
}

valid desktop-file-validate --warn-kde org.mertu.mertu.desktop
# Newer ones ask for a web address and who the developer is; there is none to name.
unasked=("--override=url-homepage-missing=pedantic,developer-info-missing=pedantic")
case $(appstreamcli validate --no-net "${unasked[@]}" org.mertu.mertu.metainfo.xml 2>&1) in
  *'not recognized'*) unasked=() ;;
esac
valid appstreamcli validate --pedantic --no-net "${unasked[@]}" org.mertu.mertu.metainfo.xml
for page in man/*; do
  silent lint "$page"
  silent format "$page"
  # A page that it refers to is there.
  while read -r name section; do
    [ -s "man/$name.$section" ] || fault "$page refers to $name($section)"
  done < <(sed -n 's/^\.Xr \([^ ]*\) \([^ ]*\).*/\1 \2/p' "$page")
done

# One version everywhere.
version=$(sed -n 's/^project(Mertu VERSION \([0-9.]*\).*/\1/p' ../CMakeLists.txt)
[ "$(sed -n 's/^mertu (\(.*\)) .*/\1/p;q' debian/changelog)" = "$version" ] ||
  fault 'debian/changelog begins with another version'
[ "$(sed -n 's/.*<release version="\([^"]*\)".*/\1/p' ./*.metainfo.xml | head -n 1)" = "$version" ] ||
  fault 'the metainfo begins with another version'
[ "$(sed -n 's/^## \([0-9.]*\).*/\1/p' ../CHANGELOG.md | head -n 1)" = "$version" ] ||
  fault 'CHANGELOG.md begins with another version'

# mertu.conf(5) tells every key, in the order in which they are tried.
keys=$(grep -o '{"[A-Z][A-Za-z0-9_]*", *[a-z0-9_]*, [0-9]}' ../config/config_file.cpp | cut -d'"' -f2)
told=$(sed -n 's/^\.It Ic //p' man/mertu.conf.5 | sed 's/ , /\n/g')
[ -n "$keys" ] && [ "$keys" = "$told" ] || fault "the keys of mertu.conf(5)"$'\n'"$told"

# mertu(1) tells every command.
forms=$(grep -o '{"![a-z]*"' ../command/command_forms.cpp | cut -d'"' -f2 | sort -u)
[ -n "$forms" ] || fault 'no commands were found'
for form in $forms; do
  # A direction in the word of a tag is told once, for all of them.
  case $form in *tagqr | *tagrq) continue ;; esac
  grep -Eq "^\.It Ic (.* , )?$form( |\$)" man/mertu.1 || fault "mertu(1) does not tell $form"
done

[ $failed -eq 0 ] && echo 'desktop: all rules hold'
exit $failed
