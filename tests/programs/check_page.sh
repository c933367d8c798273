#!/bin/sh
# check_page.sh PAGE CONSOLE PROGRAMS: on a page about programs
#   - every block of lines in the language is part of the program that was linked last,
#   - every command prints what the block behind it shows; "[…]" there stands for lines left out,
#   - every program of the folder is linked.
# Commands are run in the folder above PROGRAMS, with the console in the place of ./run.
set -eu
here=$(dirname -- "$(readlink -f -- "$0")")
page=$1 console=$2 programs=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Blocks go into files N.vb, N.sh and N.shown; beside the first kind, N.program names the program.
awk -v work="$work" '
  /^```/ && kind != "" { close(file); kind = ""; next }
  /^```/ {
    kind = $0 == "```" ? "shown" : substr($0, 4)
    number = number + 1
    if (kind == "shown" && before == "sh") number = number - 1
    before = kind
    file = sprintf("%s/%03d.%s", work, number, kind)
    if (kind == "vb") print program > (sprintf("%s/%03d.program", work, number))
    next
  }
  kind != "" { print > file; next }
  match($0, /programs\/[a-z_\/]*\.rbs\)/) { program = substr($0, RSTART + 9, RLENGTH - 10) }
' "$page"

fail() {
  echo "$(basename -- "$page"): $1" >&2
  exit 1
}

for excerpt in "$work"/*.vb; do
  program=$(cat "${excerpt%.vb}.program")
  "$here/contains.sh" "$programs/$program" "$excerpt" || {
    cat "$excerpt" >&2
    fail "these lines are not in $program"
  }
done

commands=0
for file in "$work"/*.sh; do
  command=$(cat "$file")
  case $command in
    *./run\ *) ;;
    *) fail "not a command that runs a program: $command" ;;
  esac
  [ -s "${file%.sh}.shown" ] || fail "no output is shown for: $command"
  printf '%s\n' "$command" | sed "s|\./run |'$console' |g" >"$work/command"
  (cd "$programs/.." && sh "$work/command") >"$work/printed" 2>&1 ||
    fail "ended with status $?: $command"
  # What is left out may be any lines, but at least one.
  awk -v shown="${file%.sh}.shown" '
    BEGIN {
      while ((getline line < shown) > 0) {
        if (line == "[…]" && !gap) { gap = n + 1; continue }
        wanted[++n] = line
      }
    }
    { printed[NR] = $0 }
    END {
      if (gap ? NR <= n : NR != n) { print "lines shown: " n ", printed: " NR; exit 1 }
      for (i = 1; i <= n; ++i) {
        at = gap && i >= gap ? NR - n + i : i
        if (printed[at] != wanted[i]) {
          print "shown:   " wanted[i]
          print "printed: " printed[at]
          exit 1
        }
      }
    }' "$work/printed" >&2 || fail "other output of: $command"
  commands=$((commands + 1))
done

for program in "$programs"/*.rbs; do
  grep -q "programs/$(basename -- "$program")" "$page" ||
    fail "$(basename -- "$program") is not on the page"
done
echo "$commands commands print what is shown"
