#!/bin/bash
# SPDX-License-Identifier: Apache-2.0
# library_shape.sh LIBRARY HEADER: the stand-in library needs only libc, exports functions that the platform header
# declares and nothing else, and lacks none but those that nothing calls yet.
set -eu
library=$1
header=$2
status=0
complain()
{
    echo "$*" >&2
    status=1
}

not_yet='bsp_update_norflash_data_area CCPKG_ExtractFileFromCCExt IsNeedRootProxy RootProxyExecCmd'

needed=$(readelf -dW "$library" | sed -n 's/.*(NEEDED).*\[\(.*\)\]/\1/p')
[ -n "$needed" ] || complain "needs no library at all: $library"
for name in $needed; do
    case $name in
    libc.so.6 | ld-linux*.so.*) ;;
    *) complain "needs $name" ;;
    esac
done
readelf -dW "$library" | grep -q 'SONAME.*\[libmoxplatform\.so\.1\]' || complain "has another SONAME"

exported=$(nm -D --defined-only "$library" | awk '{ print $NF }' | LC_ALL=C sort)
declared=$(tr '\n' ' ' <"$header" | grep -oE 'MOXBOOT_API [^;(]*\(' | grep -oE '[A-Za-z0-9_]+\(' | tr -d '(' |
    LC_ALL=C sort)
[ "$(wc -l <<<"$declared")" -ge 20 ] || complain "the header was not understood"
expected=$(grep -vxF -f <(tr ' ' '\n' <<<"$not_yet") <<<"$declared")
[ "$exported" = "$expected" ] || complain "exports differ: $(diff <(echo "$expected") <(echo "$exported"))"
exit $status
