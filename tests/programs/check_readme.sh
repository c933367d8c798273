#!/bin/sh
# check_readme.sh README PROGRAM EXPECTED: the README must show the program and its output as they
# are.
set -eu
for file in "$2" "$3"; do
  awk -v file="$file" '
    BEGIN { while ((getline line < file) > 0) wanted[++n] = line }
    { seen[NR] = $0 }
    END {
      for (start = 1; start + n - 1 <= NR; ++start) {
        for (i = 1; i <= n && seen[start + i - 1] == wanted[i]; ++i);
        if (i > n) exit 0
      }
      print "README.md does not show " file " as it is"
      exit 1
    }' "$1"
done
