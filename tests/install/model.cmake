# SPDX-License-Identifier: Apache-2.0
set(_board_rows ../board/family_rows.cpp model_rows.cpp model_sets.cpp)

set(MODEL_TEST_SOURCES
  model_key_file_test.cpp model_plain_test.cpp model_ptn_mode.cpp model_ptn_test.cpp model_run_file_test.cpp
  ${_board_rows})
set(MODEL_TEST_LIBS moxplatform)

# Boards by the ten thousand: no driver, no environment and no file system behind them.
moxboot_add_test(install_oracle_test PLAIN
  SOURCES model_reads_test.cpp oracle_sweep_test.cpp oracle_unread_test.cpp fake_board.cpp oracle.cpp oracle_rules.cpp ${_board_rows}
  LIBS moxboot moxplatform LABELS library install TIMEOUT 120)

# Some boards on a real file tree.
moxboot_add_test(install_whole_test
  SOURCES oracle_again_test.cpp oracle_install_test.cpp boot_file_package.cpp oracle.cpp oracle_rules.cpp ${_board_rows}
  LIBS test_support moxboot moxplatform LABELS library install)

# Functions of the library's names, as a product may have them.
moxboot_add_test(install_model_override_test
  SOURCES model_override_test.cpp LIBS test_support moxboot LABELS library install)

moxboot_add_test(install_model_texts_test PLAIN SOURCES model_texts_test.cpp LIBS moxboot)
target_compile_definitions(install_model_texts_test PRIVATE MOXBOOT_LIBRARY="$<TARGET_FILE:moxboot>")
