#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# report.sh FOLDER START-UP: what scripts/bench has measured into FOLDER, as one page.
set -eu
out=$1 start_up=$2
fields() { # fields FILE HEAD...: a file of fields as a table
  local file=$1
  shift
  printf '| %s ' "$@"
  printf '|\n'
  printf '|---%.0s' "$@"
  printf '|\n'
  sed 's/|/\\|/g; s/\t/ | /g; s/^/| /; s/$/ |/' "$file"
}

cat <<PAGE
# What it costs

Measured on $(date -u +%F), $(nproc) processors ($(sed -n 's/^model name[^:]*: //p' /proc/cpuinfo | head -n 1)), kernel $(uname -r),
$(c++ --version | head -n 1). Times are medians; a ratio is the library's time over that of its floor, in the same run. Nothing here
is a promise about another machine.

## Goals

PAGE
{
  cat "$out/goals"
  awk -v us="$start_up" 'BEGIN { printf "start-up of a virtual board\t%.0f\t\t\t50 ms\t%s\n", us * 1000, us <= 50000 ? "reached" : "missed" }'
} >"$out/goals.all"
fields "$out/goals.all" subject "library (ns)" "floor (ns)" ratio "goal (at most)" verdict
printf '\n## System calls of an installation\n\nCounted, against those that its tables imply.\n\n```\n'
grep -E 'calls, implied' "$out/install.txt"
printf '```\n\n## Size of the ARM library\n\n'
fields "$out/size" measure value goal verdict
printf '\n## The same work done by other programs\n\nWhole programs, on a virtual board; what each does beyond or short of the other stands beside it.\n\n'
fields "$out/others" work by ms remark
[ ! -e "$out/calls" ] || {
  printf '\n## Calls of the C library per exported function\n\nWith typical arguments, on a virtual board, where nothing fails.\n\n'
  fields "$out/calls" function calls which
}
