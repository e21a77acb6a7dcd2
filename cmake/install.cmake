# What `cmake --install` lays down: library, deck library, headers, the package configuration for find_package(tornwalzen)
# and the pkg-config file, the host program, the Python package. Components: library, development, host, python; the
# licences go with the library.
include(CMakePackageConfigHelpers)

install(TARGETS tornwalzen tornwalzen_deck EXPORT tornwalzenTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
install(FILES include/tornwalzen.h include/tornwalzen_ext.h include/tornwalzen_analysis.h include/tornwalzen_deck.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT tornwalzenTargets NAMESPACE tornwalzen:: COMPONENT development
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tornwalzen)
configure_package_config_file(cmake/tornwalzenConfig.cmake.in ${CMAKE_BINARY_DIR}/tornwalzenConfig.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tornwalzen)
write_basic_package_version_file(${CMAKE_BINARY_DIR}/tornwalzenConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
# The pkg-config file finds the prefix from its own place, so that an installed tree may be moved.
file(RELATIVE_PATH TORNWALZEN_PREFIX_FROM_PC
  ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
configure_file(cmake/tornwalzen.pc.in ${CMAKE_BINARY_DIR}/tornwalzen.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/tornwalzenConfig.cmake ${CMAKE_BINARY_DIR}/tornwalzenConfigVersion.cmake
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/tornwalzen COMPONENT development)
install(FILES ${CMAKE_BINARY_DIR}/tornwalzen.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)
if(NOT TORNWALZEN_DEBIAN)   # Debian has its licences in files of another name
  install(FILES LICENSE docs/licences.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT library)
endif()
if(TARGET tornwalzen_host)
  install(TARGETS tornwalzen_host RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT host)
endif()
if(TARGET tornwalzen_host AND NOT WIN32)
  install(PROGRAMS app/import/tornwalzen-import DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT host)
  install(FILES packaging/tornwalzen.bash DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions
    RENAME tornwalzen COMPONENT host)
  if(NOT TORNWALZEN_DEBIAN)   # Debian has it packed
    install(FILES docs/tornwalzen.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT host)
  endif()
  install(FILES packaging/_tornwalzen DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions COMPONENT host)
endif()
include(cmake/python.cmake)
include(cmake/package.cmake)
