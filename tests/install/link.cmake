# SPDX-License-Identifier: Apache-2.0
set(LINK_TEST_SOURCES
  boot_file_boards_test.cpp
  boot_file_extract_test.cpp
  boot_file_package.cpp
  boot_file_rows.cpp
  boot_file_table_test.cpp
  link_calls.cpp
  link_calls_test.cpp
  link_encap_rows.cpp
  link_encap_test.cpp
  link_file_test.cpp
  link_keep_test.cpp
  link_length_test.cpp
  link_rows.cpp
  link_run_file_test.cpp
  link_steps_test.cpp
  link_table_test.cpp
  link_walk_test.cpp
  ../board/family_rows.cpp)

# Functions of the library's names, as a product may have them; they also show what the library hands on.
moxboot_add_test(install_link_override_test
  SOURCES link_override_test.cpp link_own.cpp boot_file_package.cpp
  LIBS test_support moxboot LABELS library install)

moxboot_add_test(install_link_texts_test PLAIN
  SOURCES link_texts_test.cpp boot_file_rows.cpp link_encap_rows.cpp link_rows.cpp LIBS moxboot LABELS install)
target_compile_definitions(install_link_texts_test PRIVATE MOXBOOT_LIBRARY="$<TARGET_FILE:moxboot>")
