# What the host program is made with where the compiler is another system's (mingw-w64): headers of the machine that
# builds, in a folder of their own so that none of its system's come with them; zlib as Debian has it for that system;
# tinyobjloader and Clipper compiled here, Clipper from the source that TORNWALZEN_CLIPPER names.
set(TORNWALZEN_CLIPPER "" CACHE PATH "folder of clipper.cpp, where the host program is built for another system")
if(NOT EXISTS ${TORNWALZEN_CLIPPER}/clipper.cpp)
  message(FATAL_ERROR "TORNWALZEN_CLIPPER=${TORNWALZEN_CLIPPER} has no clipper.cpp; scripts/foreign brings it")
endif()
set(foreign ${CMAKE_BINARY_DIR}/foreign)
file(MAKE_DIRECTORY ${foreign}/include/polyclipping)
foreach(header CLI nlohmann tiny_obj_loader.h)
  file(CREATE_LINK /usr/include/${header} ${foreign}/include/${header} SYMBOLIC)
endforeach()
configure_file(${TORNWALZEN_CLIPPER}/clipper.hpp ${foreign}/include/polyclipping/clipper.hpp COPYONLY)
foreach(package CLI11::CLI11 nlohmann_json::nlohmann_json)
  add_library(${package} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${package} INTERFACE ${foreign}/include)
endforeach()

file(CONFIGURE OUTPUT ${foreign}/tiny_obj_loader.cpp @ONLY CONTENT
  "#define TINYOBJLOADER_IMPLEMENTATION\n#include <tiny_obj_loader.h>\n")
add_library(foreign_tinyobjloader STATIC ${foreign}/tiny_obj_loader.cpp)
target_compile_definitions(foreign_tinyobjloader PUBLIC TINYOBJLOADER_USE_DOUBLE)
add_library(foreign_clipper STATIC ${TORNWALZEN_CLIPPER}/clipper.cpp)
foreach(package foreign_tinyobjloader foreign_clipper)
  target_include_directories(${package} SYSTEM PUBLIC ${foreign}/include)
  target_compile_options(${package} PRIVATE -w)
endforeach()
add_library(tinyobjloader::tinyobjloader_double ALIAS foreign_tinyobjloader)

find_library(ZLIB_LIBRARY NAMES libz.a REQUIRED)   # not the import library of a DLL
find_package(ZLIB REQUIRED)
