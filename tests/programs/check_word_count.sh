#!/bin/sh
# check_word_count.sh CONSOLE PROGRAM TEXT: the word count must be that of tr, sort and uniq.
set -eu
console=$1 program=$2 text=$3
LC_ALL=C
export LC_ALL
[ -r "$text" ] || {
  echo "$text is missing; tools/setup test installs it" >&2
  exit 1
}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
tr -cs 'A-Za-z\200-\377' '\n' <"$text" | tr 'A-Z' 'a-z' | grep . | sort | uniq -c |
  awk '{ print $1 "\t" $2 }' >"$work/expected"
"$console" "$program" <"$text" >"$work/actual"
[ -s "$work/expected" ]
cmp "$work/expected" "$work/actual" || {
  diff "$work/expected" "$work/actual" | head -n 20
  exit 1
}
echo "$(wc -l <"$work/actual") words alike"
