# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` puts where, and how others find it: pkg-config and find_package(moxboot).
include(CMakePackageConfigHelpers)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME dev)

set(_targets moxboot)
if(MOXBOOT_PLATFORM STREQUAL standalone)
  list(APPEND _targets moxplatform)
endif()
install(TARGETS ${_targets} EXPORT moxboot-targets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev)
if(MOXBOOT_PLATFORM STREQUAL standalone)
  # Opened at run time; nobody links with them.
  install(TARGETS drv_basic drv_secure nb_bsp moxpackage LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime)
endif()
install(DIRECTORY include/moxboot DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT moxboot-targets NAMESPACE moxboot:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/moxboot)

configure_package_config_file(cmake/moxboot-config.cmake.in ${CMAKE_BINARY_DIR}/moxboot-config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/moxboot)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/moxboot-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_BINARY_DIR}/moxboot-config.cmake ${CMAKE_BINARY_DIR}/moxboot-config-version.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/moxboot)

# The prefix is told relative to the file, so that an installed tree can be moved; a library folder of several parts
# (lib/x86_64-linux-gnu) takes more steps up.
string(REGEX REPLACE "[^/]+" ".." _up "${CMAKE_INSTALL_LIBDIR}")
configure_file(cmake/moxboot.pc.in ${CMAKE_BINARY_DIR}/moxboot.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/moxboot.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
