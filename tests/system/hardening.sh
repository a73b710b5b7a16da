#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# hardening.sh FOLDER: every program and library below it is hardened as the compiler and the linker can: read-only
# relocations, bound at load, no executable stack, nothing both writable and executable, position-independent, stack
# protector, fortified calls. Prints a row for each.
set -eu
bad=0
complain() { printf '%s: %s\n' "$1" "$2"; bad=1; }

# What has a reason to lack something: file, property, reason.
exceptions='
libvboard-preload.so fortify   it stands where the C library does, with its very names
libvboard-preload.so stack     it has no buffers of its own
libnb_bsp.so         fortify   it calls nothing that has a fortified form
libnb_bsp.so         stack     it has no buffers of its own
vboard-reboot        dynamic   it is static: programs of every kind start it
'
excused() { grep -qE "^$1 +$2 " <<<"$exceptions"; }

checked=0
while IFS= read -r file; do
  [ "$(head -c 4 "$file" | tr -d '\0')" = $'\177ELF' ] || continue
  name=${file##*/}
  [[ $name != *.so.* ]] || name=${name%%.so.*}.so
  checked=$((checked + 1))
  segments=$(readelf -lW "$file") dynamic=$(readelf -dW "$file" 2>/dev/null) symbols=$(readelf -W --dyn-syms "$file")
  grep -q GNU_RELRO <<<"$segments" || complain "$file" "no RELRO"
  grep GNU_STACK <<<"$segments" | grep -q ' RW ' || complain "$file" "executable stack"
  awk '$1 == "LOAD"' <<<"$segments" | grep -q 'RWE' && complain "$file" "a segment is writable and executable"
  grep -q TEXTREL <<<"$dynamic" && complain "$file" "relocations in its text"
  if ! excused "$name" dynamic; then
    grep -qE 'BIND_NOW|FLAGS.*NOW' <<<"$dynamic" || complain "$file" "not bound at load"
    [ "$(readelf -hW "$file" | awk '$1 == "Type:" { print $2 }')" = DYN ] || complain "$file" "not position-independent"
    excused "$name" stack || grep -q '__stack_chk_' <<<"$symbols" || complain "$file" "no stack protector"
    excused "$name" fortify || grep -qE '__[a-z0-9]+_chk\b' <<<"$symbols" || complain "$file" "no fortified call"
  fi
  printf 'checked %s\n' "${file#"$1/"}"
done < <(find "$1" -type f | sort)
[ "$checked" -gt 0 ] || complain "$1" "nothing to check"
exit "$bad"
