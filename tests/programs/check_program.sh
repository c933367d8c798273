#!/bin/sh
# check_program.sh EXPECTED INPUT CONSOLE PROGRAM [ARGUMENT…]: fed with the output of the shell
# command INPUT, a program must print just what is expected and exit 0.
set -eu
expected=$1 input=$2
shift 2
actual=$(mktemp)
trap 'rm -f "$actual"' EXIT
sh -c "$input" | "$@" >"$actual"
diff -u "$expected" "$actual"
