#!/bin/sh
# check_ledger.sh CONSOLE PROGRAM: with --ledger a program ends without a violation, and what it
# leaves held was held by comparisons of keys alone: strings and variants, never a container, an
# iterator, an array or an exception.
set -eu
report=$(mktemp)
trap 'rm -f "$report"' EXIT
"$1" --ledger "$2" 2>"$report" >/dev/null </dev/null
cat "$report"
if grep -E 'ZRB|array|Exception|Dictionary|violation' "$report" | grep -vE 'no violation|0 violations'; then
  echo "something else than compared keys is still held" >&2
  exit 1
fi
