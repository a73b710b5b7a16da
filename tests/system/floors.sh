#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# floors.sh SRC: the families stand in floors; a source file includes only what lies on its own floor or below.
set -eu
cd "$1"
floor() {
  case $1 in
  base) echo 0 ;; channel) echo 1 ;; env) echo 2 ;; board) echo 3 ;; state | trust) echo 4 ;; install | reset) echo 5 ;;
  *) echo "unknown family: $1" >&2; exit 2 ;;
  esac
}
bad=0 seen=0
while IFS=: read -r file include; do
  from=${file%%/*} to=${include%%/*}
  seen=$((seen + 1))
  up=$(floor "$to") own=$(floor "$from")
  if [ "$up" -gt "$own" ] || { [ "$up" = "$own" ] && [ "$from" != "$to" ]; }; then
    echo "$file includes $include, which is not below it"
    bad=1
  fi
done < <(grep -roE '^#include "[^"]+"' --include='*.cpp' --include='*.hpp' . | sed -E 's|^\./||; s|#include "([^"]+)"|\1|')
[ "$seen" -gt 0 ] || { echo "no includes seen"; exit 1; }
for dir in */; do floor "${dir%/}" >/dev/null; done
echo "$seen includes"
exit "$bad"
