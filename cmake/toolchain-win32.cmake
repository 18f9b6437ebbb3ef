# 32-bit Windows with MinGW-w64. The posix-thread flavour of the compiler is named in full because it is the one
# with a working <thread> and <mutex>.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)

set(CMAKE_C_COMPILER i686-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER i686-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER i686-w64-mingw32-windres)

get_filename_component(VM_WIN32_ROOT "${CMAKE_CURRENT_LIST_DIR}/.." ABSOLUTE)
set(CMAKE_FIND_ROOT_PATH "${VM_WIN32_ROOT}/build/deps/win32" /usr/i686-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# SSE2 is the floor and does all floating point, so that results have the width their types name. Callers may hand
# us a stack aligned to 4 bytes only: every function realigns where it needs more.
foreach(language C CXX)
  set(CMAKE_${language}_FLAGS_INIT "-msse2 -mfpmath=sse -mstackrealign -ffp-contract=off")
endforeach()

# No DLL of the compiler's travels with the product.
foreach(kind EXE MODULE SHARED)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT "-static -static-libgcc -static-libstdc++")
endforeach()

set(CMAKE_CROSSCOMPILING_EMULATOR "${VM_WIN32_ROOT}/scripts/wine-run.sh")
