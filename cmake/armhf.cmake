# SPDX-License-Identifier: Apache-2.0
# Cross build for 32-bit ARM Linux (hard float). The ARM libraries beyond libc lie unpacked in a sysroot of the
# build tree (scripts/setup puts them there), so nothing foreign is installed on the host.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_LIBRARY_ARCHITECTURE arm-linux-gnueabihf)

set(MOXBOOT_ARM_SYSROOT ${CMAKE_CURRENT_LIST_DIR}/../build/sysroot-armhf CACHE PATH "unpacked ARM packages")
get_filename_component(_sysroot ${MOXBOOT_ARM_SYSROOT} ABSOLUTE)
list(APPEND CMAKE_FIND_ROOT_PATH ${_sysroot} /usr/arm-linux-gnueabihf)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(_libs ${_sysroot}/usr/lib/arm-linux-gnueabihf)
# pkg-config must not answer with the host's own libraries.
set(ENV{PKG_CONFIG_SYSROOT_DIR} ${_sysroot})
set(ENV{PKG_CONFIG_LIBDIR} ${_libs}/pkgconfig:${_sysroot}/usr/share/pkgconfig)
set(CMAKE_CXX_FLAGS_INIT "-isystem ${_sysroot}/usr/include -isystem ${_sysroot}/usr/include/arm-linux-gnueabihf")
set(CMAKE_C_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-L${_libs} -Wl,-rpath-link,${_libs}:${_sysroot}/lib/arm-linux-gnueabihf")
endforeach()

# How a program of this build runs on the development machine: -L gives the loader and libc, the library path
# what a board's tree has for ARM programs, and the unpacked packages.
set(MOXBOOT_EMULATOR qemu-arm -L /usr/arm-linux-gnueabihf
    -E LD_LIBRARY_PATH=/dev/vboard/lib/arm-linux-gnueabihf:${_libs}:${_sysroot}/lib/arm-linux-gnueabihf)
