#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# c_examples.sh SOURCES INCLUDE: the examples of the pages about the library compile.
set -eu
sources=$1 include=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
count=0
for page in "$sources"/*.3.scd.in; do
  code=$(sed -n '/^# EXAMPLES/,/^# /p' "$page" | sed -n '/^```$/,/^```$/p' | sed '/^```$/d')
  [ -n "$code" ] || continue
  name=$(basename "$page" .3.scd.in)
  {
    # shellcheck disable=SC2016
    sed -n 's/^\*#include \(<.*>\)\*$/#include \1/p' "$page"
    printf '#include <moxboot/moxboot.h>\n#include <stdio.h>\nvoid save(uint32_t mode);\nvoid example(void);\nvoid example(void)\n{\n%s\n}\n' "$code"
  } >"$work/$name.c"
  cc -std=c11 -Wall -Wextra -Wpedantic -Werror -I"$include" -c "$work/$name.c" -o "$work/$name.o" || exit 1
  count=$((count + 1))
done
[ "$count" -ge 20 ] || { echo "there are $count examples only"; exit 1; }
echo "$count examples"
