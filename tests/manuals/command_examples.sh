#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# command_examples.sh BIN PAGE [--on-board]: every command line in the page's examples does what it is there for, in the page's
# order. With --on-board they run on one virtual board; a reboot ends its line, and the board goes on.
set -eu
bin=$1 page=$(realpath "$2") on_board=${3:-}
work=$(mktemp -d -p /var/tmp)
export PATH=$bin:$PATH VBOARD_STATE=$work/board
unset MOXPLATFORM_TRACE
cleanup()
{
  vboard down >/dev/null 2>&1 || true
  rm -rf "$work"
}
trap cleanup EXIT
cd "$work"
[ -z "$on_board" ] || vboard up --board gl6264-r22 --keep "$bin"

count=0
while IFS= read -r line; do
  [ -n "$line" ] || continue
  count=$((count + 1))
  status=0
  if [ -z "$on_board" ]; then
    timeout 60 sh -c "$line" >"$work/out" 2>&1 </dev/null || status=$?
  else
    timeout 60 vboard exec -- sh -c "$line" >"$work/out" 2>&1 </dev/null || status=$?
  fi
  expected=0
  case $line in "moxctl reboot"*) expected=137 ;; esac
  if [ "$status" != "$expected" ]; then
    echo "\"$line\" ended with $status:"
    cat "$work/out"
    exit 1
  fi
done < <(sed -n '/^# EXAMPLES/,/^# SEE/p' "$page" | sed -n '/^```$/,/^```$/p' | sed '/^```$/d')
[ "$count" -ge 15 ] || { echo "there are $count examples only"; exit 1; }
echo "$count command lines"
