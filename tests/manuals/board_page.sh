#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# board_page.sh BIN PAGE: the profile that the document about the virtual board shows makes a board, its command lines work, and a
# planned fault looks in the journal as it says.
set -eu
bin=$1 page=$(realpath "$2")
work=$(mktemp -d -p /var/tmp)
export PATH=$bin:$PATH VBOARD_STATE=$work/board
cleanup()
{
  vboard down >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap cleanup EXIT
cd "$work"
awk '/^```toml$/ { on = 1; next } /^```$/ { on = 0 } on' "$page" >my-board.toml
[ -s my-board.toml ]
count=0
while IFS= read -r line; do
  line=${line%%  #*}
  count=$((count + 1))
  expected=0
  # A refused item is a failure of moxctl.
  case $line in *--fault*) expected=1 ;; esac
  # The page begins a fault's story without a board that stays.
  case $line in "vboard fault add"* | "vboard exec -- moxctl wdt start") vboard up --keep "$bin" ;; esac
  status=0
  timeout 60 sh -c "$line" >out 2>&1 </dev/null || status=$?
  [ "$status" = "$expected" ] || { echo "\"$line\" ended with $status:"; cat out; exit 1; }
  case $line in
  *--fault*)
    grep '^#' out >journal
    awk '/^```/ { if (on) print ""; on = !on; next } on { printf "%s\001", $0 }' "$page" |
      grep -qxF "$(awk '{ printf "%s\001", $0 }' journal)" ||
      { echo "the page has another journal than"; cat journal; exit 1; }
    ;;
  "vboard fault clear") vboard down ;;
  esac
done < <(grep -oP '^    \Kvboard .*' "$page")
[ "$count" -ge 8 ] || { echo "there are $count command lines only"; exit 1; }
echo "$count command lines"
