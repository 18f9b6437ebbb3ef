# Options and compiler flags that hold for every target of ours.

option(VM_BUILD_TESTS "Build the unit tests and the fuzzers" ON)
option(VM_BUILD_BENCHMARKS "Build the benchmarks" ON)
option(VM_WERROR "Treat warnings as errors" OFF)
option(VM_SANITIZE "Build with the address and undefined behaviour sanitizers" OFF)
option(VM_LIBFUZZER "Link the fuzzers with libFuzzer (clang only); otherwise they replay their corpus" OFF)

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()

set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

# Assertions stay on in every build we make: -O2 without NDEBUG. On Windows nothing reads the debug information.
if(WIN32)
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g0")
else()
  set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O2 -g")
endif()

# The same sources built in another folder are found in the cache again.
find_program(VM_CCACHE ccache)
if(VM_CCACHE AND NOT DEFINED CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${VM_CCACHE})
endif()

add_library(vm_options INTERFACE)
target_include_directories(vm_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_options(vm_options INTERFACE
  -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion
  # Results are exact to the byte on every target: no fused operations, whatever the processor has.
  -ffp-contract=off)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(vm_options INTERFACE
    # Version 12 reports correct std::string code with these.
    -Wno-restrict -Wno-error=array-bounds -Wno-error=stringop-overflow -Wno-error=stringop-overread)
endif()
if(VM_WERROR)
  target_compile_options(vm_options INTERFACE -Werror)
endif()

if(WIN32)
  target_compile_definitions(vm_options INTERFACE
    WINVER=0x0601 _WIN32_WINNT=0x0601 NOMINMAX WIN32_LEAN_AND_MEAN __USE_MINGW_ANSI_STDIO=1)
  # A product binary carries no symbols; -s at the link also drops those of the static runtime.
  target_link_options(vm_options INTERFACE -s)
endif()

if(VM_SANITIZE)
  set(VM_SANITIZER_FLAGS -fsanitize=address,undefined,float-cast-overflow -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The checks that the sanitizers put in confuse this warning.
    list(APPEND VM_SANITIZER_FLAGS -Wno-maybe-uninitialized)
  endif()
  target_compile_options(vm_options INTERFACE ${VM_SANITIZER_FLAGS})
  target_link_options(vm_options INTERFACE ${VM_SANITIZER_FLAGS})
  target_compile_definitions(vm_options INTERFACE _GLIBCXX_ASSERTIONS)
endif()
