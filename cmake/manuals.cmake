# SPDX-License-Identifier: Apache-2.0
# Manual pages, made during the build where scdoc and python3 are there, and what the shells need to complete commands.
find_program(SCDOC scdoc)
find_program(PYTHON3 python3)
set(MOXBOOT_MANUALS_DIR ${CMAKE_BINARY_DIR}/share/man)
if(SCDOC AND PYTHON3 AND NOT MOXBOOT_SANITIZE AND NOT MOXBOOT_COVERAGE)
  file(GLOB _page_sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/man/*.scd.in)
  file(GLOB _headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/include/moxboot/*.h)
  add_custom_command(OUTPUT ${CMAKE_BINARY_DIR}/manuals.stamp
    COMMAND ${CMAKE_SOURCE_DIR}/man/make.sh ${PYTHON3} ${SCDOC} ${CMAKE_SOURCE_DIR}/man ${CMAKE_SOURCE_DIR}/include
            ${PROJECT_VERSION} ${MOXBOOT_MANUALS_DIR}
    COMMAND ${CMAKE_COMMAND} -E touch ${CMAKE_BINARY_DIR}/manuals.stamp
    DEPENDS ${_page_sources} ${_headers} ${CMAKE_SOURCE_DIR}/man/make.sh ${CMAKE_SOURCE_DIR}/man/reference.py
    COMMENT "Making the manual pages" VERBATIM)
  add_custom_target(manuals ALL DEPENDS ${CMAKE_BINARY_DIR}/manuals.stamp)
  install(DIRECTORY ${MOXBOOT_MANUALS_DIR}/man3 DESTINATION ${CMAKE_INSTALL_MANDIR} COMPONENT dev)
  if(MOXBOOT_TOOLS)
    install(FILES ${MOXBOOT_MANUALS_DIR}/man1/moxctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT moxctl)
  endif()
  if(MOXBOOT_VBOARD)
    install(FILES ${MOXBOOT_MANUALS_DIR}/man1/vboard.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT vboard)
  endif()
else()
  message(STATUS "The manual pages are not made: they need scdoc and python3, and no sanitizer")
endif()

install(DIRECTORY docs/ DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT dev FILES_MATCHING PATTERN *.md PATTERN *.svg)
# One file serves both commands; each has it under its own name, as the shells look for it.
foreach(command moxctl vboard)
  if(TARGET ${command})
    install(FILES completion/moxboot.bash RENAME ${command}
      DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT ${command})
    install(FILES completion/_moxboot.zsh RENAME _${command} DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions
      COMPONENT ${command})
  endif()
endforeach()
