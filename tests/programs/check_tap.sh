#!/bin/sh
# check_tap.sh CONSOLE PROGRAM [OPTION…]: a self-checking program must exit 0 and print its plan, then
# exactly the planned lines "ok NUMBER - …" in their order, and nothing else.
set -eu
console=$1 program=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
status=0
"$console" "$@" "$program" >"$work/output" </dev/null || status=$?
cat "$work/output"
[ "$status" -eq 0 ] || {
  echo "the program ended with status $status" >&2
  exit 1
}
awk '
  function wrong(what) { print "line " NR ": " what; failed = 1; exit }
  NR == 1 {
    if ($0 !~ /^1\.\.[1-9][0-9]*$/) wrong("there is no plan")
    planned = substr($0, 4) + 0
    next
  }
  /^ok [0-9]+ - ./ {
    if ($2 + 0 != ++seen) wrong("number " $2 " where " seen " is due")
    next
  }
  /^not ok / { wrong("a check failed: " $0) }
  { wrong("neither a plan nor a result: " $0) }
  END {
    if (failed) exit 1
    if (NR == 0) { print "nothing was printed"; exit 1 }
    if (seen != planned) { print seen + 0 " checks where " planned " are planned"; exit 1 }
  }' "$work/output" >&2
