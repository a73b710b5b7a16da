#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# hardened.sh PROJECT PACKAGES ARCHITECTURE: what the packages install is hardened; and a program that is not is noticed.
set -eu
project=$1 packages=$2 architecture=$3
. "$(dirname "$0")/lib.sh"
files=$(packages_of "$architecture") || skip "there are no packages; scripts/packages makes them"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/soft" "$work/all"
echo 'int main(void) { return 0; }' | cc -x c - -no-pie -Wl,-z,norelro -Wl,-z,execstack -Wl,-z,lazy -fno-stack-protector -o "$work/soft/soft" 2>/dev/null
told=$("$project/tests/system/hardening.sh" "$work/soft") && { echo "a soft program passes"; exit 1; }
for word in RELRO stack "bound at load" position-independent protector fortified; do
  grep -q "$word" <<<"$told" || { echo "nothing was said of $word:"; echo "$told"; exit 1; }
done

for file in $files; do
  dpkg-deb -x "$file" "$work/all"
done
"$project/tests/system/hardening.sh" "$work/all"
