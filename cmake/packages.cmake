# SPDX-License-Identifier: Apache-2.0
# The Debian packages that `cpack` makes of an installed tree. What each needs is written down, not asked of the packaging
# tools: those know only the packages of the machine that builds, not the ARM ones. scripts/packages tries them out.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME moxboot)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT "MOX platform developers <moxboot@example.invalid>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
if(CMAKE_LIBRARY_ARCHITECTURE STREQUAL arm-linux-gnueabihf)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
endif()
set(_this "(= ${PROJECT_VERSION}-1)")
# Shared by every program of C++.
set(_run_time "libc6 (>= 2.36), libgcc-s1 (>= 12), libstdc++6 (>= 12)")

# moxboot_package(COMPONENT name section depends summary description)
macro(moxboot_package component name section depends summary description)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  string(TOUPPER ${component} _upper)
  set(CPACK_DEBIAN_${_upper}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${_upper}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${_upper}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_COMPONENT_${_upper}_DESCRIPTION "${summary}\n${description}")
  install(FILES LICENSE RENAME copyright DESTINATION share/doc/${name} COMPONENT ${component})
  install(FILES CHANGELOG.md DESTINATION share/doc/${name} COMPONENT ${component})
endmacro()

set(CPACK_COMPONENTS_ALL "")
moxboot_package(runtime libmoxboot${PROJECT_VERSION_MAJOR} libs
  "${_run_time}, libmbedcrypto7 (>= 2.28), libarchive13 (>= 3.6)"
  "boot driver library of the MOX router platform"
  "Identity and role of a board, boot environment, crash records, reset and watchdog, installation of boot files, trust services. With stand-ins for the platform's libraries.")
moxboot_package(dev libmoxboot-dev libdevel "libmoxboot${PROJECT_VERSION_MAJOR} ${_this}, libc6-dev"
  "boot driver library of the MOX router platform: development files"
  "Headers, pkg-config and CMake files, manual pages and documents.")
moxboot_package(moxctl moxctl admin
  "libmoxboot${PROJECT_VERSION_MAJOR} ${_this}, ${_run_time}, libmbedcrypto7 (>= 2.28)"
  "command line of a MOX board"
  "Shows and changes what the boot driver library knows of its board, installs software packages, and plans installations for any board.")
moxboot_package(vboard moxboot-vboard devel
  "libmoxboot${PROJECT_VERSION_MAJOR} ${_this}, ${_run_time}, libfuse3-3 (>= 3.14), libubootenv0.1 (>= 0.3), libtomlplusplus3 (>= 3.3), libarchive13 (>= 3.6), zlib1g"
  "virtual MOX boards"
  "Runs programs on a board that is not there: its device files, boot environment, watchdog, resets and file tree, with planned faults and a journal of the conversation with the driver.")
set(CPACK_DEBIAN_DEV_PACKAGE_SUGGESTS "cmake, pkg-config, moxboot-vboard")
set(CPACK_DEBIAN_VBOARD_PACKAGE_RECOMMENDS moxctl)
set(CPACK_DEBIAN_VBOARD_PACKAGE_SUGGESTS "libubootenv-tool")

# The loader's cache learns of the libraries.
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/packaging/triggers CONTENT "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/packaging/triggers)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/packages)
include(CPack)
