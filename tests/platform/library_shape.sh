#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# library_shape.sh LIBRARY HEADER... [-- FUNCTION...]: the stand-in library needs only libc (and libmoxplatform, where it
# is another one), and exports the functions given and nothing else; without any, all that the headers declare.
set -eu
library=$1
shift
status=0
complain()
{
    echo "$*" >&2
    status=1
}

headers=()
while [ $# -gt 0 ] && [ "$1" != -- ]; do
    headers+=("$1")
    shift
done
case ${library##*/} in
libmoxplatform.so*) soname=libmoxplatform.so.1 ;;
*) soname=${library##*/} ;;
esac

needed=$(readelf -dW "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
[ -n "$needed" ] || complain "needs no library at all: $library"
for name in $needed; do
    case $name in
    libc.so.6 | ld-linux*.so.*) ;;
    libmoxplatform.so.1) [ "$soname" != "$name" ] || complain "needs itself" ;;
    *) complain "needs $name" ;;
    esac
done
readelf -dW "$library" | grep SONAME | grep -qF "[$soname]" || complain "has another SONAME than $soname"

exported=$(nm -D --defined-only "$library" | awk '{ print $NF }' | LC_ALL=C sort)
declared=$(cat "${headers[@]}" | tr '\n' ' ' | grep -oE 'MOXBOOT_API [^;(]*\(' | grep -oE '[A-Za-z0-9_]+\(' |
    tr -d '(' | LC_ALL=C sort)
if [ $# -gt 0 ]; then
    shift
    expected=$(printf '%s\n' "$@" | LC_ALL=C sort)
    undeclared=$(grep -vxF -f <(echo "$declared") <<<"$expected" || true)
    [ -z "$undeclared" ] || complain "no header declares $undeclared"
else
    [ "$(wc -l <<<"$declared")" -ge 20 ] || complain "the headers were not understood"
    expected=$declared
fi
[ "$exported" = "$expected" ] || complain "exports differ: $(diff <(echo "$expected") <(echo "$exported"))"
exit $status
