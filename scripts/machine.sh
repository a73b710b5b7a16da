# SPDX-License-Identifier: Apache-2.0
# Building the board as a machine for the system emulator. Sourced after lib.sh.

# What of the ARM build lies on it.
machine_targets=(moxctl moxboot moxplatform moxpackage drv_basic drv_secure nb_bsp machine_icudata vboard-devices
  board-memory board-seed board-callers board-query-cost contract_test)

# The tests say why when there is no machine to start; so a machine that cannot be built is no failure here.
# build_machine [native target...]
build_machine() {
  build native vboard sample_package ${1:+"$@"}
  build armhf "${machine_targets[@]}"
  say "putting the machine together"
  build/native/bin/vboard machine build || echo "there is no machine; its tests are skipped"
}
