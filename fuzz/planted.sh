#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# planted.sh REPLAY...: a replay that meets the planted defect fails, and says at which file.
set -u
work=$(mktemp -d "${PWD}/planted.XXXXXX") # the board's tree has another "/tmp"
trap 'rm -rf "$work"' EXIT
printf 'harmless' >"$work/a"
"$@" "$work" >"$work.log" 2>&1 || { cat "$work.log"; echo "a harmless file failed"; exit 1; }
printf 'MOX!....' >"$work/b"
if "$@" "$work" >"$work.log" 2>&1; then
  echo "the planted defect was not noticed"
  exit 1
fi
grep -q "$work/b" "$work.log" || { cat "$work.log"; echo "the file was not named"; exit 1; }
rm -f "$work.log"
echo "found"
