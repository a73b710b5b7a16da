#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# valgrind.sh PROJECT PACKAGES BUILD: each function of the library in the package, once, under valgrind.
set -eu
project=$1 packages=$2 build=$3
. "$(dirname "$0")/lib.sh"
packages_of amd64 >/dev/null || skip "there are no packages; scripts/packages makes them"
[ -x "$build/tests/sweep_once" ] || skip "sweep_once is not built"
command -v valgrind >/dev/null || skip "valgrind is not installed"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
dpkg-deb -x "$(packages_of amd64 | grep '/libmoxboot1_')" "$work"
"$project/scripts/valgrind" --library "$work/usr/lib/x86_64-linux-gnu" --built "$build" sweep_once
