#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# What clean_machine.sh runs in the clean root.
set -eu
cd /trial
fail() { echo "$*"; exit 1; }
expect() { # expect TEXT COMMAND...: its output has a line that begins so
  local text=$1
  shift
  "$@" >out 2>err || { cat out err; fail "failed: $*"; }
  grep -q "^$text" out || { cat out; fail "no line \"$text\": $*"; }
}
[ ! -e /usr/bin/moxctl ] && [ ! -e /usr/include/moxboot ] || fail "this root is not clean"

apt-get -q update >log 2>&1 || { tail -n 5 log; exit 77; }
apt-get -q install -y --no-install-recommends ./packages/*.deb >log 2>&1 || { tail -n 20 log; fail "the packages cannot be installed"; }
[ "$(dpkg-query -W -f '${Status}\n' libmoxboot1 libmoxboot-dev moxctl moxboot-vboard | sort -u)" = "install ok installed" ] ||
  fail "not all are installed"

for file in $(dpkg -L libmoxboot1 moxctl moxboot-vboard); do
  [ ! -f "$file" ] || ! ldd "$file" 2>/dev/null | grep "not found" || fail "$file does not find that"
done
expect "moxctl 1" moxctl --version
expect "Hard type .*0x900005e6" vboard run --board qs3540-mpu -- moxctl info
moxctl package sample sample.moxpkg >/dev/null
expect "" moxctl package verify sample.moxpkg

apt-get -q install -y --no-install-recommends pkg-config cmake >log 2>&1 || { tail -n 5 log; exit 77; }
# shellcheck disable=SC2046
cc -std=c11 -Wall -Wextra -Wpedantic -Werror example.c $(pkg-config --cflags --libs moxboot) -o example
expect "hard type 0x900005e6, OS type 1" vboard run --board qs3540-mpu -- ./example
{ cmake -S consumer -B build && cmake --build build; } >log 2>&1 || { cat log; fail "the CMake consumer cannot be built"; }
expect "moxboot says 4" ./build/consumer

apt-get -q remove -y libmoxboot1 libmoxboot-dev moxctl moxboot-vboard >log 2>&1 || { tail log; fail "the packages cannot be removed"; }
left=$(find /usr -iname '*mox*' -o -name '*vboard*')
[ -z "$left" ] || fail "left behind: $left"
echo "installed, compiled, run and removed"
