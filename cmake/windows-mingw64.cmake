# Toolchain file: 64-bit Windows from Linux, by mingw-w64 with its POSIX threads.
#   cmake --preset windows && cmake --build --preset windows
# What is made needs no runtime library beside it: those of gcc, C++ and the threads are linked in.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR wine64)

# printf and its kin as C99 has them. The system aligns the stack to 16 bytes only, and gcc believes that it holds vectors
# of 32 and 64: every aligned move of a vector is assembled as an unaligned one.
set(CMAKE_C_FLAGS_INIT "-D__USE_MINGW_ANSI_STDIO=1 -Wa,-muse-unaligned-vector-move")
set(CMAKE_CXX_FLAGS_INIT "${CMAKE_C_FLAGS_INIT}")
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()
