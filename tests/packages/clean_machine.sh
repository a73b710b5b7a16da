#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# clean_machine.sh PROJECT PACKAGES: a minimal Debian root, in which a compiler is all that was installed, takes the packages
# with what they depend on; the README's example is compiled there, and both ways to find the library work; programs run on a
# virtual board; afterwards the packages are removed and leave nothing. Needs root, mmdebstrap and a package source.
set -eu
project=$1 packages=$2
. "$(dirname "$0")/lib.sh"
files=$(packages_of amd64) || skip "there are no packages; scripts/packages makes them"
[ "$(dpkg --print-architecture)" = amd64 ] || skip "this machine is no amd64"
[ "$(id -u)" = 0 ] || skip "not root"
command -v mmdebstrap >/dev/null || skip "there is no mmdebstrap; scripts/setup installs it"

base=$packages/clean-root.tar
if [ ! -e "$base" ]; then
  sources=()
  for file in /etc/apt/sources.list /etc/apt/sources.list.d/*.sources /etc/apt/sources.list.d/*.list; do
    [ ! -s "$file" ] || sources+=("$file")
  done
  unshare -m --propagation private mmdebstrap --mode=root --format=tar --variant=apt --include=gcc,libc6-dev,make,mount \
    bookworm "$base.new" "${sources[@]}" >"$packages/clean-root.log" 2>&1 ||
    { tail -n 5 "$packages/clean-root.log"; skip "no clean root could be made"; }
  mv "$base.new" "$base"
fi
root=$(mktemp -d)
trap 'rm -rf --one-file-system "$root"' EXIT
tar -C "$root" -xf "$base"
for file in /etc/apt/sources.list.d/*.sources /etc/apt/apt.conf.d/*; do
  # The machine's own ways to its package source.
  [ -e "$root$file" ] || cp "$file" "$root$file"
done
cp -L /etc/resolv.conf /etc/hosts "$root/etc/"
mkdir -p "$root/trial/packages"
# shellcheck disable=SC2086
cp $files "$root/trial/packages/"
cp -r "$project/tests/system/consumer" "$root/trial/"
cp "$(dirname "$0")/on_clean_machine.sh" "$root/trial/"
awk '/^```c$/ { code = 1; next } /^```$/ { code = 0 } code' "$project/README.md" >"$root/trial/example.c"

# A root of its own, not only a change of directory into it: a virtual board needs a user namespace, which the kernel
# refuses otherwise. The mounts go with the namespace.
unshare -m --pid --fork --propagation private bash -c '
  set -eu
  [ "$(readlink /proc/self/ns/mnt)" != "$1" ] || { echo "this is not a namespace of its own"; exit 1; }
  mount --bind "$2" "$2"
  cd "$2"
  mount -t proc proc proc
  mount --rbind /dev dev
  mkdir -p .old
  pivot_root . .old
  cd /
  umount -l /.old
  rmdir /.old
  exec env -i HOME=/root PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin TERM=dumb LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive bash /trial/on_clean_machine.sh' _ "$(readlink /proc/self/ns/mnt)" "$root"
