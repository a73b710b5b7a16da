#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# cppcheck.sh TREE: cppcheck finds nothing in the library's and the stand-ins' sources; what it is wrong about is marked
# where it stands, with the reason.
set -eu
cd "$1"
found=$(cppcheck --quiet --enable=warning,performance,portability --inline-suppr --std=c++20 --language=c++ \
  --error-exitcode=1 -I include -I src -I platform src platform 2>&1) || { echo "$found"; exit 1; }
# It must not have been blind: a division by zero is found.
if printf 'int f() { int zero = 0; return 1 / zero; }\n' >"${TMPDIR:-/tmp}/cppcheck-$$.cpp" &&
   cppcheck --quiet --error-exitcode=1 "${TMPDIR:-/tmp}/cppcheck-$$.cpp" >/dev/null 2>&1; then
  echo "cppcheck finds nothing at all"
  exit 1
fi
rm -f "${TMPDIR:-/tmp}/cppcheck-$$.cpp"
echo "$(find src platform -name '*.cpp' | wc -l) files"
