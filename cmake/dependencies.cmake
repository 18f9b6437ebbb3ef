# What comes from the package system. The Windows target finds libpng where scripts/setup.sh built it and takes
# only static libraries; GoogleTest is built with the target's own compiler there.

if(WIN32)
  set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
endif()

set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)
find_package(ZLIB REQUIRED)
find_package(PNG REQUIRED)

if(VM_BUILD_TESTS)
  include(GoogleTest)
  if(WIN32 AND EXISTS /usr/src/googletest/CMakeLists.txt)
    set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
    add_subdirectory(/usr/src/googletest ${CMAKE_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
    foreach(target gtest gtest_main gmock gmock_main)
      target_compile_options(${target} PRIVATE -w)
      if(NOT TARGET GTest::${target})
        add_library(GTest::${target} ALIAS ${target})
      endif()
    endforeach()
  else()
    find_package(GTest REQUIRED)
  endif()
endif()

if(VM_BUILD_BENCHMARKS AND NOT WIN32)
  find_package(benchmark REQUIRED)
endif()
