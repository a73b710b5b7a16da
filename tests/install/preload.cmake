# SPDX-License-Identifier: Apache-2.0
# Updaters in place of the stand-in: each hands its functions' calls on to the test program. A test puts a copy of one
# where its program looks first.
set(_updaters WHOLE UPDATING DELETING EMPTY)
set(_functions_WHOLE WITH_UPDATE WITH_DELETE)
set(_functions_UPDATING WITH_UPDATE)
set(_functions_DELETING WITH_DELETE)
foreach(kind ${_updaters})
  string(TOLOWER ${kind}_updater target)
  add_library(${target} MODULE preload_updater.cpp)
  target_include_directories(${target} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_compile_definitions(${target} PRIVATE ${_functions_${kind}})
  target_link_libraries(${target} PRIVATE moxboot_options)
  set_target_properties(${target} PROPERTIES
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests/board_support NO_SONAME ON)
  if(MOXBOOT_SANITIZE)
    target_compile_options(${target} PRIVATE -fno-sanitize=all)
  endif()
endforeach()

# The updaters, the board families' lists, and what stands in front of the platform.
add_library(preload_support INTERFACE)
target_sources(preload_support INTERFACE
  ${CMAKE_CURRENT_LIST_DIR}/preload_files.cpp ${CMAKE_CURRENT_LIST_DIR}/preload_spies.cpp
  ${CMAKE_SOURCE_DIR}/tests/board/family_rows.cpp)
target_link_libraries(preload_support INTERFACE front_libraries)
foreach(kind ${_updaters})
  string(TOLOWER ${kind}_updater target)
  target_compile_definitions(preload_support INTERFACE ${kind}_UPDATER="$<TARGET_FILE:${target}>")
  add_dependencies(preload_support ${target})
endforeach()
add_dependencies(preload_support drv_basic)

set(PRELOAD_TEST_SOURCES
  preload_chain_test.cpp preload_delete_test.cpp preload_library_test.cpp preload_notify_test.cpp
  preload_table_test.cpp preload_walk_test.cpp)
set(PRELOAD_TEST_LIBS preload_support)

# Functions of the library's names, as a product may have them.
moxboot_add_test(install_preload_override_test SOURCES preload_override_test.cpp
  LIBS preload_support test_support moxboot LABELS library install)

moxboot_add_test(install_preload_texts_test PLAIN SOURCES preload_texts_test.cpp LIBS moxboot LABELS library install)
target_compile_definitions(install_preload_texts_test PRIVATE MOXBOOT_LIBRARY="$<TARGET_FILE:moxboot>")
