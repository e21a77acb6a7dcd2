# For Windows a zip by CPack of library, development files, host program and pages; scripts/foreign windows --zip makes it.
if(WIN32)
  install(FILES README.md CHANGELOG.md DESTINATION . COMPONENT library)
  install(DIRECTORY docs DESTINATION . COMPONENT library)
  install(FILES samples/square_cup.obj DESTINATION samples COMPONENT host)
  install(FILES tests/install/c_host.c tests/install/handle_host.c DESTINATION samples COMPONENT development)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_NAME tornwalzen)
  set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
  set(CPACK_PACKAGE_FILE_NAME tornwalzen-${PROJECT_VERSION}-windows-x86_64)
  set(CPACK_COMPONENTS_ALL library development)
  if(TARGET tornwalzen_host)
    list(APPEND CPACK_COMPONENTS_ALL host)
  endif()
  set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
  set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)
  set(CPACK_STRIP_FILES ON)
  include(CPack)
  return()
endif()

# Debian packages by CPack, one per component: libtornwalzen0, libtornwalzen-dev, tornwalzen, python3-tornwalzen; and the
# names of the files that scripts/package puts beside them. The version is the project's; nothing here repeats it.
option(TORNWALZEN_DEBIAN "lay files down as Debian's packages have them; scripts/package sets it" OFF)
set(TORNWALZEN_MAINTAINER "tornwalzen authors <authors@tornwalzen.example>" CACHE STRING
  "maintainer of the Debian packages")
if(NOT TORNWALZEN_DEBIAN)
  return()
endif()

set(library_package libtornwalzen${PROJECT_VERSION_MAJOR})
set(packages ${library_package} libtornwalzen-dev tornwalzen python3-tornwalzen)
set(components library development host python)
foreach(package component IN ZIP_LISTS packages components)
  install(FILES ${CMAKE_BINARY_DIR}/debian/copyright ${CMAKE_BINARY_DIR}/debian/changelog.Debian.gz
    ${CMAKE_BINARY_DIR}/debian/changelog.gz
    DESTINATION share/doc/${package} COMPONENT ${component})
endforeach()
install(FILES docs/licences.md DESTINATION share/doc/tornwalzen COMPONENT host)
install(DIRECTORY ${CMAKE_BINARY_DIR}/debian/man/ DESTINATION share/man/man1 COMPONENT host)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tornwalzen)
set(CPACK_PACKAGE_VENDOR tornwalzen)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_COMPONENTS_ALL ${components})
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${TORNWALZEN_MAINTAINER}")
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")   # each package has its own first line
set(same_version "(= ${PROJECT_VERSION}-1)")

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME ${library_package})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_BINARY_DIR}/debian/symbols ${CMAKE_BINARY_DIR}/debian/triggers)
set(CPACK_DEBIAN_LIBRARY_DESCRIPTION "inverse analysis of sheet-metal forming - shared library
From the triangle mesh of a drawn or bent sheet-metal part the library finds,
by an inverse finite element analysis, the flat blank and the strain of every
triangle: where the sheet thins, where it thickens, how large it has to be
cut. This package holds the shared library with its plain C interface.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libtornwalzen-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library_package} ${same_version}")
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION "inverse analysis of sheet-metal forming - development files
Headers readable from C and C++, the library of mesh decks, and what CMake
and pkg-config find libtornwalzen by.")

set(CPACK_DEBIAN_HOST_PACKAGE_NAME tornwalzen)
set(CPACK_DEBIAN_HOST_PACKAGE_SECTION science)
set(CPACK_DEBIAN_HOST_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_HOST_PACKAGE_DEPENDS "${library_package} ${same_version}, python3:any")   # of tornwalzen-import
set(CPACK_DEBIAN_HOST_PACKAGE_RECOMMENDS "python3-gmsh, python3-meshio, python3-numpy, python3-h5py")
set(CPACK_DEBIAN_HOST_DESCRIPTION "inverse analysis of sheet-metal forming - program
Reads the mesh or the CAD file of a drawn or bent sheet-metal part and writes
its flat blank, drawings of it, strains and thickness for ParaView, a page for
any browser, and a verdict on what the result is worth. CAD files and some
mesh formats are read with the recommended packages.")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-tornwalzen)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_DEBIAN_PYTHON_PACKAGE_ARCHITECTURE all)
set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
  "python3:any (>= 3.9), python3-numpy, ${library_package} (>= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_PYTHON_PACKAGE_RECOMMENDS "python3-matplotlib, python3-tqdm")
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-meshio, python3-distributed")
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${CMAKE_SOURCE_DIR}/packaging/debian/postinst ${CMAKE_SOURCE_DIR}/packaging/debian/prerm)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "inverse analysis of sheet-metal forming - Python package
Flat blank, strains and thickness of sheet-metal parts as numpy arrays, on
many processors or a cluster, with pictures and forming limits.")
include(CPack)
