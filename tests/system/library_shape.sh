#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# library_shape.sh READELF LIBRARY: what the library needs at run time, that it runs nothing when it is loaded, and that it
# is hardened.
set -eu
readelf=$1 library=$2
bad=0
complain() { echo "$*"; bad=1; }

needed=$("$readelf" -dW "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
for name in $needed; do
  case $name in
  libc.so.6 | ld-linux*.so.* | libmbedcrypto.so.* | libmoxplatform.so.*) ;;
  *) complain "needs $name" ;;
  esac
done
grep -q libmoxplatform <<<"$needed" || complain "does not need the platform: $needed"

# The start files of the compiler bring one entry (frame_dummy); an initialiser of our own would be a second one.
word=$("$readelf" -hW "$library" | grep -q ELF32 && echo 4 || echo 8)
size=$("$readelf" -SW "$library" | awk '{ for (i = 1; i <= NF; i++) if ($i == ".init_array") print $(i + 4) }')
[ "$((16#${size:-0}))" -le "$word" ] || complain ".init_array has 0x$size bytes"

"$readelf" -lW "$library" | grep -q GNU_RELRO || complain "no RELRO"
"$readelf" -dW "$library" | grep -qE 'BIND_NOW|FLAGS.*NOW' || complain "not bound at load"
"$readelf" -lW "$library" | grep -E 'GNU_STACK' | grep -q 'RWE' && complain "executable stack"
"$readelf" -dW "$library" | grep -q 'SONAME.*\[libmoxboot.so.1\]' || complain "wrong SONAME"
[ "$bad" = 0 ] && echo "needs: $needed"
exit "$bad"
