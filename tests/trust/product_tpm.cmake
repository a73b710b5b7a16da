# SPDX-License-Identifier: Apache-2.0
# Product information, TPM and measurements.
moxboot_add_test(product_test
  SOURCES product_directory_test.cpp product_facts_test.cpp product_name_test.cpp ../board/family_rows.cpp
  LIBS test_support moxboot LABELS library)
# Functions of the library's names, as a product may have them.
moxboot_add_test(product_override_test SOURCES product_override_test.cpp LIBS test_support moxboot LABELS library)

# Board-support libraries of one function each.
set(_tpm_functions active=drv_board_get_tpm_active_status online=drv_board_get_tpm_online_status)
set(_tpm_libraries tpm_secure_boot)
add_library(tpm_secure_boot MODULE tpm_secure_boot.cpp)
foreach(function ${_tpm_functions})
  string(REGEX REPLACE "=.*" "" kind ${function})
  string(REGEX REPLACE ".*=" "" function ${function})
  add_library(tpm_${kind} MODULE tpm_status.cpp)
  target_compile_definitions(tpm_${kind} PRIVATE TPM_FUNCTION=${function})
  list(APPEND _tpm_libraries tpm_${kind})
endforeach()
foreach(library ${_tpm_libraries})
  target_include_directories(${library} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(${library} PRIVATE moxboot_options)
  set_target_properties(${library} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/board_support NO_SONAME ON)
  if(MOXBOOT_SANITIZE)
    target_compile_options(${library} PRIVATE -fno-sanitize=all)
  endif()
endforeach()

moxboot_add_test(tpm_test
  SOURCES tpm_boards_test.cpp tpm_library.cpp tpm_questions_test.cpp tpm_status_test.cpp
  LIBS front_libraries test_support moxboot LABELS library)
target_compile_definitions(tpm_test PRIVATE TPM_ACTIVE_LIBRARY="$<TARGET_FILE:tpm_active>"
  TPM_ONLINE_LIBRARY="$<TARGET_FILE:tpm_online>" TPM_SECURE_BOOT_LIBRARY="$<TARGET_FILE:tpm_secure_boot>")
add_dependencies(tpm_test drv_basic ${_tpm_libraries})

moxboot_add_test(measurement_test
  SOURCES directory_reader.cpp measurement_fields_test.cpp measurement_lists_test.cpp measurement_names_test.cpp
          measurement_records_test.cpp
  LIBS test_support moxboot LABELS library)
# Stands before libc's in the whole program, also while a sanitizer starts; so it cannot share the header compiled once.
set_source_files_properties(directory_reader.cpp PROPERTIES COMPILE_OPTIONS -fno-sanitize=all
  SKIP_PRECOMPILE_HEADERS ON)

moxboot_add_test(product_tpm_texts_test PLAIN
  SOURCES measurement_texts_test.cpp product_texts_test.cpp tpm_texts_test.cpp LIBS moxboot)
target_compile_definitions(product_tpm_texts_test PRIVATE MOXBOOT_LIBRARY="$<TARGET_FILE:moxboot>")
