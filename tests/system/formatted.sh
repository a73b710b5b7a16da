#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# formatted.sh TREE: every C and C++ file of the tree is as clang-format leaves it.
set -eu
cd "$1"
files=$(find include src platform vboard tools tests bench fuzz -name '*.cpp' -o -name '*.hpp' -o -name '*.c' -o -name '*.h')
[ -n "$files" ]
# shellcheck disable=SC2086
clang-format --dry-run -Werror $files
echo "$(wc -w <<<"$files") files"
