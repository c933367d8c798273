#!/bin/sh
# check_program.sh CONSOLE PROGRAM EXPECTED: a program must print just what is expected and exit 0.
set -eu
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
"$1" "$2" >"$actual" </dev/null
diff -u "$3" "$actual"
