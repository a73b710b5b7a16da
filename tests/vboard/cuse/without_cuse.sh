#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# On a machine whose kernel has no CUSE: both ways to start the board's devices say so and leave nothing behind.
#   without_cuse.sh VBOARD_DEVICES VBOARD
set -eu
if [ -e /dev/cuse ]; then
    echo "this machine has /dev/cuse: what is said without it cannot be heard here"
    exit 77
fi
devices=$1 vboard=$2
boards=$(dirname "$vboard")/../share/moxboot/boards
scratch=$(mktemp -d /var/tmp/without-cuse-XXXXXX)
trap 'rm -rf "$scratch"' EXIT

# refuses WORDS COMMAND...: it fails, and says these words.
refuses()
{
    words=$1
    shift
    if said=$("$@" 2>&1); then
        echo "it did not fail: $*" >&2
        exit 1
    fi
    case $said in
    *"$words"*) ;;
    *)
        echo "$* said \"$said\", not \"$words\"" >&2
        exit 1
        ;;
    esac
}

refuses "there is no /dev/cuse: this kernel has no CUSE, or its module is not loaded (modprobe cuse)" \
    "$devices" --board "$boards/qs3520-mpu.toml" --state "$scratch/one" --foreground
refuses "there is no /dev/cuse" "$vboard" up --cuse --board qs3520-mpu --state "$scratch/two"
refuses "there is no board \"nowhere\"" "$devices" --board nowhere --state "$scratch/three"
refuses "\"lightning\" takes no board down" \
    "$devices" --board "$boards/qs3520-mpu.toml" --state "$scratch/four" --reset lightning
refuses "\"0999\" are no permissions" \
    "$devices" --board "$boards/qs3520-mpu.toml" --state "$scratch/five" --mode 0999
refuses "--keep is about a file tree" "$vboard" up --cuse --keep /usr --state "$scratch/six"
left=$(ls "$scratch")
[ -z "$left" ] || { echo "left behind: $left" >&2; exit 1; }
