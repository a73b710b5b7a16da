#!/usr/bin/env bash
# SPDX-License-Identifier: Apache-2.0
# contract.sh BIN PROGRAM PACKAGE: the stand-ins keep what the header promises of a platform, and the program that says so notices a
# platform that does not.
set -eu
bin=$1 program=$2 package=$3
work=$(mktemp -d -p /var/tmp)
trap 'rm -rf "$work"' EXIT
export PATH=$bin:$PATH
cd "$work"
cp "$package" package
id=$(moxctl --json package list package | grep -m 1 -oP '"id": *"?\K[0-9a-fx]+')
vboard run --keep "$program" --keep "$work" -- "$program" --proxy --flash --package "$work/package" "$id" | tee "$work/out"
grep -q '^[5-9][0-9] promises, 0 not kept$' "$work/out"

# One that says yes to everything.
printf '#include <stdint.h>\nuint32_t GetEnv(const char *n, char *v) { (void)n; (void)v; return 0; }\n' >"$work/yes.c"
cc -shared -fPIC "$work/yes.c" -o "$work/libyes.so"
if vboard run --keep "$program" --keep "$work" -- env LD_PRELOAD="$work/libyes.so" "$program" >"$work/out"; then
  echo "a platform without an environment was not noticed"
  exit 1
fi
grep -q 'not kept: GetEnv("moxboot_contract_nothing"' "$work/out"
