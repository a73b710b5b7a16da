# SPDX-License-Identifier: Apache-2.0
# Compiler settings that every target of the project gets by linking moxboot_options.
add_library(moxboot_options INTERFACE)
target_compile_options(moxboot_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wpedantic -Wundef -Wcast-align -Wformat=2 -Wvla
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wextra-semi>
)
# A target with the property MOXBOOT_SMALL is optimized for size. What can overflow in it are buffers of texts; a function
# that only has a number's address taken then needs no canary.
target_compile_options(moxboot_options INTERFACE
  "$<IF:$<BOOL:$<TARGET_PROPERTY:MOXBOOT_SMALL>>,-Os;-fstack-protector;--param=ssp-buffer-size=4,-fstack-protector-strong>")
if(MOXBOOT_WERROR)
  target_compile_options(moxboot_options INTERFACE -Werror)
endif()
target_link_options(moxboot_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack -Wl,--as-needed)

# A release is the same, byte for byte, wherever it was built, and wherever the target's packages were unpacked for it.
set(_renamed "${CMAKE_BINARY_DIR}=." "${CMAKE_SOURCE_DIR}=.")
if(MOXBOOT_ARM_SYSROOT)
  get_filename_component(_sysroot ${MOXBOOT_ARM_SYSROOT} ABSOLUTE)
  list(APPEND _renamed "${_sysroot}=") # may lie in the project: the last name that fits is taken
endif()
foreach(_folder ${_renamed})
  target_compile_options(moxboot_options INTERFACE $<$<CONFIG:Release>:-ffile-prefix-map=${_folder}>)
endforeach()

# A target with the property MOXBOOT_UNOPTIMIZED needs to compile quickly, not to run quickly. Fortified calls need the optimizer.
set(_plain
  "$<IF:$<BOOL:$<TARGET_PROPERTY:MOXBOOT_UNOPTIMIZED>>,-O0;-U_FORTIFY_SOURCE,-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
if(MOXBOOT_SANITIZE)
  # Fortified calls would hide from the sanitizers' own interceptors. A target with the property MOXBOOT_UNWATCHED is
  # compiled as without sanitizers.
  string(REPLACE "," "$<COMMA>" _sanitizers "${MOXBOOT_SANITIZE}")
  target_compile_options(moxboot_options INTERFACE
    "$<IF:$<BOOL:$<TARGET_PROPERTY:MOXBOOT_UNWATCHED>>,${_plain},-fsanitize=${_sanitizers};-fno-sanitize-recover=all;-fno-omit-frame-pointer;-U_FORTIFY_SOURCE>")
  target_link_options(moxboot_options INTERFACE -fsanitize=${MOXBOOT_SANITIZE})
elseif(MOXBOOT_COVERAGE)
  target_compile_options(moxboot_options INTERFACE -O0 -g)
else()
  target_compile_options(moxboot_options INTERFACE "${_plain}")
endif()

# What goes with a precompiled header: ccache asks for the first of these options, and out of such a header gcc warns of
# std::string's own code.
set(MOXBOOT_PRECOMPILED_OPTIONS
  "$<$<CXX_COMPILER_ID:GNU>:-fpch-preprocess;-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread>")

# The large headers that most files of a target include are compiled once.
function(moxboot_precompile target)
  target_precompile_headers(${target} PRIVATE ${ARGN})
  target_compile_options(${target} PRIVATE ${MOXBOOT_PRECOMPILED_OPTIONS})
endfunction()

# A tool of which a developer compiles more than he runs. On the emulated target it runs slowly enough as it is.
function(moxboot_tool target)
  target_compile_options(${target} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O1 -g1>)
endfunction()
function(moxboot_command_line target)
  moxboot_tool(${target})
  if(NOT CMAKE_CROSSCOMPILING AND CMAKE_BUILD_TYPE STREQUAL RelWithDebInfo)
    set_target_properties(${target} PROPERTIES MOXBOOT_UNOPTIMIZED ON)
  endif()
endfunction()
