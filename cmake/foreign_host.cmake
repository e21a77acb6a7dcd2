# What the host program is made with where the compiler is another system's (mingw-w64): headers of the machine that
# builds, in a folder of their own so that none of its system's come with them; zlib as Debian has it for that system;
# Clipper compiled here from the source that TORNWALZEN_CLIPPER names.
set(TORNWALZEN_CLIPPER "" CACHE PATH "folder of clipper.cpp, where the host program is built for another system")
if(NOT EXISTS ${TORNWALZEN_CLIPPER}/clipper.cpp)
  message(FATAL_ERROR "TORNWALZEN_CLIPPER=${TORNWALZEN_CLIPPER} has no clipper.cpp; scripts/foreign brings it")
endif()
set(foreign ${CMAKE_BINARY_DIR}/foreign)
file(MAKE_DIRECTORY ${foreign}/include/polyclipping)
foreach(header CLI nlohmann)
  file(CREATE_LINK /usr/include/${header} ${foreign}/include/${header} SYMBOLIC)
endforeach()
configure_file(${TORNWALZEN_CLIPPER}/clipper.hpp ${foreign}/include/polyclipping/clipper.hpp COPYONLY)
foreach(package CLI11::CLI11 nlohmann_json::nlohmann_json)
  add_library(${package} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${package} INTERFACE ${foreign}/include)
endforeach()

add_library(foreign_clipper STATIC ${TORNWALZEN_CLIPPER}/clipper.cpp)
target_include_directories(foreign_clipper SYSTEM PUBLIC ${foreign}/include)
target_compile_options(foreign_clipper PRIVATE -w)

find_library(ZLIB_LIBRARY NAMES libz.a REQUIRED)   # not the import library of a DLL
find_package(ZLIB REQUIRED)
