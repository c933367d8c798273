#!/bin/sh
# check_readme.sh README PROGRAM EXPECTED: the README must show the program and its output as they
# are.
set -eu
here=$(dirname -- "$(readlink -f -- "$0")")
for file in "$2" "$3"; do
  "$here/contains.sh" "$1" "$file" || {
    echo "README.md does not show $file as it is" >&2
    exit 1
  }
done
