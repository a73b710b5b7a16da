#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# protocol.sh VBOARD PROGRAM PAGE: the examples in the document about the driver's protocol are what the library sends and a virtual
# board answers, and so is its journal.
set -eu
vboard=$1 program=$2 page=$(realpath "$3")
work=$(mktemp -d -p /var/tmp)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$vboard" run --board qs3540-mpu --log "$work/journal" -- "$program" >"$work/bytes"
# Blocks of the page, each in one line; then each example is looked for as a whole.
joined() { awk '{ printf "%s%s", $0, "\001" }'; }
awk '/^```/ { inside = !inside; if (!inside) printf "\n"; next } inside { printf "%s%s", $0, "\001" }' "$page" >"$work/page"
missing=0 count=0
compare()
{
  count=$((count + 1))
  grep -qxF -- "$2" "$work/page" && return
  printf '%s: the page has something else than\n%s\n' "$1" "$(tr '\001' '\n' <<<"$2")"
  missing=1
}
while IFS= read -r title; do
  compare "$title" "$(awk -v title="$title" '/^\[/ { on = $0 == title; next } on && NF' "$work/bytes" | joined)"
done < <(grep '^\[' "$work/bytes")
compare journal "$(joined <"$work/journal")"
[ "$count" -ge 10 ] || { echo "there are $count examples only"; exit 1; }
[ "$missing" = 0 ] && echo "$count examples"
exit "$missing"
