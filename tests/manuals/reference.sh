#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# reference.sh DOXYGEN PROJECT VERSION: the reference of the headers is made without a word from Doxygen, and functions stand in it.
set -eu
doxygen=$1 project=$2
export MOXBOOT_VERSION=$3
MOXBOOT_DOCS_OUT=$(mktemp -d)
export MOXBOOT_DOCS_OUT
trap 'rm -rf "$MOXBOOT_DOCS_OUT"' EXIT
cd "$project"
said=$("$doxygen" docs/Doxyfile 2>&1) || { echo "$said"; exit 1; }
[ -z "$said" ] || { echo "$said"; exit 1; }
for name in MOX_GetBoardHardType drv_getenv_s iof_startupstep_trace PdtSmlFileInfo; do
  grep -rqF "$name" "$MOXBOOT_DOCS_OUT/reference" --include='*.html' || { echo "$name is missing"; exit 1; }
done
echo "$(find "$MOXBOOT_DOCS_OUT/reference" -name '*.html' | wc -l) pages"
