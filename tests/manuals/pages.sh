#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# pages.sh PAGES SYMBOLS: every function that the library exports has its prototype in exactly one page of section 3 and is found
# there by its own name; all pages render without a warning.
set -eu
pages=$1 symbols=$2
export LC_ALL=C.UTF-8 MANPAGER=cat MANWIDTH=100
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
wrong=0

count=0
for page in "$pages"/man1/* "$pages"/man3/moxboot*; do
  count=$((count + 1))
  name=${page##*/}
  man --warnings=w -l "$page" 2>"$work/warnings" >"$work/$name"
  # scdoc writes more paragraph marks than a page needs; everything else that is found is a defect.
  mandoc -T lint -W warning "$page" 2>&1 | grep -v 'skipping paragraph macro' >>"$work/warnings" || true
  if [ -s "$work/warnings" ]; then
    sed "s|^|$name: |" "$work/warnings"
    wrong=1
  fi
  for part in NAME SYNOPSIS DESCRIPTION 'SEE ALSO'; do
    grep -qx "$part" "$work/$name" || { echo "$name: there is no $part"; wrong=1; }
  done
done
[ "$count" -ge 20 ] || { echo "there are $count pages only"; wrong=1; }

functions=0
while read -r symbol kind; do
  [ "$kind" != data ] || continue
  functions=$((functions + 1))
  # With its result's type in front it is a prototype.
  homes=$(cd "$work" && grep -lE "^       (u?int[0-9]+_t|void) \*?$symbol\(" moxboot*.3 || true)
  if [ "$(wc -w <<<"$homes")" != 1 ]; then
    echo "$symbol stands in: ${homes:-no page}"
    wrong=1
  elif [ "$(cat "$pages/man3/$symbol.3")" != ".so man3/$homes" ]; then
    echo "man $symbol does not lead to $homes"
    wrong=1
  fi
done < <(grep -E '^[A-Za-z_]' "$symbols")
[ "$functions" -ge 300 ] || { echo "$symbols names $functions functions only"; wrong=1; }
[ "$wrong" = 0 ] && echo "$count pages, $functions functions"
exit "$wrong"
