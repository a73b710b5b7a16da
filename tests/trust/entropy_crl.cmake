# SPDX-License-Identifier: Apache-2.0
moxboot_add_test(entropy_test TIMEOUT 300
  SOURCES entropy_gettime_test.cpp entropy_call_test.cpp entropy_clock.cpp entropy_harvest_test.cpp entropy_measure_test.cpp
    entropy_model.cpp entropy_parts_test.cpp entropy_read_test.cpp entropy_sha256.cpp
  LIBS test_support moxboot LABELS library)
moxboot_add_test(entropy_threads_test SOURCES entropy_threads_test.cpp LIBS test_support moxboot LABELS library threads)

# Secure drivers: one that hands its calls on to the test program, and one without the function that takes lists. The
# test puts copies of them in front.
foreach(kind driver no_driver)
  add_library(crl_${kind} MODULE crl_${kind}.cpp)
  target_include_directories(crl_${kind} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(crl_${kind} PRIVATE moxboot_options)
  set_target_properties(crl_${kind} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${_board_support} NO_SONAME ON)
  if(MOXBOOT_SANITIZE)
    target_compile_options(crl_${kind} PRIVATE -fno-sanitize=all)
  endif()
endforeach()
moxboot_add_test(crl_test
  SOURCES crl_calls.cpp crl_deliver_test.cpp crl_fixture.cpp crl_module_test.cpp crl_read_back_test.cpp crl_secure_test.cpp
  LIBS front_libraries test_support moxboot LABELS library)
target_compile_definitions(crl_test PRIVATE
  CRL_DRIVER_LIBRARY="$<TARGET_FILE:crl_driver>" OTHER_DRIVER_LIBRARY="$<TARGET_FILE:crl_no_driver>")
add_dependencies(crl_test crl_driver crl_no_driver)

moxboot_add_test(system_time_test SOURCES system_time_clock.cpp system_time_set_test.cpp
  LIBS test_support moxboot LABELS library)

moxboot_add_test(entropy_crl_texts_test PLAIN SOURCES entropy_crl_texts_test.cpp LIBS moxboot)
target_compile_definitions(entropy_crl_texts_test PRIVATE MOXBOOT_LIBRARY="$<TARGET_FILE:moxboot>")
