#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# changelog.sh PROJECT: the newest entry of the change log names the interface as it is: a header or a dump does not change
# without a word about it. Tried first on a header with one more line.
set -eu
project=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/packaging"
cp -r "$project/include" "$work/"
cp -r "$project/packaging/abi" "$work/packaging/"
word=$("$project/packaging/abi/word" "$project")
[ "$word" = "$("$project/packaging/abi/word" "$work")" ] || { echo "a copy has another word"; exit 1; }
echo "/* one more line */" >>"$work/include/moxboot/moxboot.h"
[ "$word" != "$("$project/packaging/abi/word" "$work")" ] || { echo "a changed header has the same word"; exit 1; }

newest=$(awk '/^## / { n++ } n == 1' "$project/CHANGELOG.md")
grep -q "Interface $word\b" <<<"$newest" && exit 0
echo "CHANGELOG.md's newest entry does not say \"Interface $word\": a public header or a dump in packaging/abi has changed."
echo "Say there what changed, and put the new word in place of the old one."
exit 1
