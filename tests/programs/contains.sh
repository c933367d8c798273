#!/bin/sh
# contains.sh WHOLE PART: a file must contain the lines of another one, in one piece.
set -eu
awk -v part="$2" '
  BEGIN { while ((getline line < part) > 0) wanted[++n] = line }
  { seen[NR] = $0 }
  END {
    for (start = 1; n > 0 && start + n - 1 <= NR; ++start) {
      for (i = 1; i <= n && seen[start + i - 1] == wanted[i]; ++i);
      if (i > n) exit 0
    }
    exit 1
  }' "$1"
