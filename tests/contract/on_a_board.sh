#!/bin/sh
# SPDX-License-Identifier: Apache-2.0
# Runs the contract program on a virtual board, through the shim.
#   on_a_board.sh VBOARD PROGRAM [gtest options]
set -eu
vboard=$1
shift
state=$(mktemp -d /var/tmp/contract-XXXXXX)
trap 'rm -rf "$state"' EXIT
CONTRACT_CONTROL=$state/control.sock "$vboard" run --state "$state" --board gl6264-r22 -- "$@"
