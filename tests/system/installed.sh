#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# installed.sh CMAKE BUILD CONSUMER README: installs the build into a folder of its own; a C program finds the library there
# through pkg-config and through find_package, and runs; so does the example of the README.
set -eu
cmake=$1 build=$2 consumer=$3 readme=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for component in runtime dev moxctl; do
  "$cmake" --install "$build" --component "$component" --prefix "$work/first" >/dev/null
done
# An installed tree can be moved.
mv "$work/first" "$work/moved"
libdir=$(dirname "$(find "$work/moved" -name libmoxboot.so | head -n 1)")
test -L "$libdir/libmoxboot.so" && test -e "$libdir/libmoxboot.so.1"
export LD_LIBRARY_PATH=$libdir
"$work/moved/bin/moxctl" --version | grep -q "^moxctl "

export PKG_CONFIG_PATH=$libdir/pkgconfig
flags=$(pkg-config --cflags --libs moxboot)
# shellcheck disable=SC2086
cc -std=c11 -Wall -Wextra -Wpedantic -Werror "$consumer/main.c" $flags -Wl,-rpath-link,"$libdir" -o "$work/by-pkg-config"
"$work/by-pkg-config" >"$work/out" && grep -q '^moxboot says 4$' "$work/out"

awk '/^```c$/ { code = 1; next } /^```$/ { code = 0 } code' "$readme" >"$work/example.c"
grep -q main "$work/example.c"
# shellcheck disable=SC2086
cc -std=c11 -Wall -Wextra -Wpedantic -Werror "$work/example.c" $flags -Wl,-rpath-link,"$libdir" -o "$work/example"
"$build/bin/vboard" run --board qs3540-mpu -- "$work/example" >"$work/out" 2>/dev/null
grep -q '^hard type 0x900005e6, OS type 1$' "$work/out"

"$cmake" -S "$consumer" -B "$work/build" -DCMAKE_PREFIX_PATH="$work/moved" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
"$cmake" --build "$work/build" >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
"$work/build/consumer" >"$work/out" && grep -q '^moxboot says 4$' "$work/out"
echo "found, built and run both ways"
