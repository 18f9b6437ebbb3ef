# Helpers that define targets. Sources are found by globbing, so a new file needs no change here; a folder named
# win32 or posix, at any depth, is compiled for that system only.

# vm_glob(<variable> <folder> [EXCLUDE <subfolder>...]): the .cpp files under a folder, in a fixed order.
function(vm_glob variable folder)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "" "EXCLUDE")
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS LIST_DIRECTORIES false ${folder}/*.cpp)
  if(WIN32)
    list(APPEND arg_EXCLUDE posix)
  else()
    list(APPEND arg_EXCLUDE win32)
  endif()
  foreach(source IN LISTS sources)
    file(RELATIVE_PATH relative ${folder} ${source})
    foreach(excluded IN LISTS arg_EXCLUDE)
      if("/${relative}" MATCHES "/${excluded}/")
        list(REMOVE_ITEM sources ${source})
      endif()
    endforeach()
  endforeach()
  list(SORT sources)
  set(${variable} ${sources} PARENT_SCOPE)
endfunction()

# vm_add_library(<name> [WHOLE] SOURCES <file>... DEPENDS <library>...): one static library.
# WHOLE is for libraries whose classes register themselves in static initialisers: every object of such a library is
# linked, referenced or not. Then <name> stands for the archive <name>_archive linked whole.
# Without sources the library is only a name that passes its dependencies on.
function(vm_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "WHOLE" "" "SOURCES;DEPENDS")
  if(NOT arg_SOURCES)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE vm_options ${arg_DEPENDS})
    return()
  endif()
  set(archive ${name})
  if(arg_WHOLE)
    set(archive ${name}_archive)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE $<LINK_LIBRARY:WHOLE_ARCHIVE,${archive}>)
  endif()
  add_library(${archive} STATIC ${arg_SOURCES})
  set_target_properties(${archive} PROPERTIES OUTPUT_NAME ${name})
  target_link_libraries(${archive} PUBLIC vm_options ${arg_DEPENDS})
  if(VM_LIBFUZZER)
    target_compile_options(${archive} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# vm_add_tests(<name> SOURCES <file>... DEPENDS <library>... [INCLUDES <folder>...]): one GoogleTest program.
# Under an emulator one start takes longer than most tests, so there the whole program is one entry of ctest.
function(vm_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS;INCLUDES")
  if(NOT arg_SOURCES)
    return()
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests ${arg_INCLUDES})
  target_compile_definitions(${name} PRIVATE
    VM_SOURCE_DIR="${CMAKE_SOURCE_DIR}"
    VM_BINARY_DIR="${CMAKE_BINARY_DIR}"
    VM_PNG_SAMPLES_DIR="${CMAKE_SOURCE_DIR}/build/deps/src/libpng/contrib")
  target_link_libraries(${name} PRIVATE vm_options ${arg_DEPENDS} vm_test_support Threads::Threads)
  if(WIN32)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 900)
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
  endif()
endfunction()

# vm_add_benchmark(<name> SOURCES <file>... DEPENDS <library>...): one Google Benchmark program, and a short run of
# it as a test so that it keeps working.
function(vm_add_benchmark name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE vm_options ${arg_DEPENDS} benchmark::benchmark benchmark::benchmark_main)
  if(VM_BUILD_TESTS)
    add_test(NAME ${name}_runs COMMAND ${name} --benchmark_min_time=0.001)
    set_tests_properties(${name}_runs PROPERTIES TIMEOUT 300 LABELS bench)
  endif()
endfunction()

# vm_add_fuzzer(<name> SOURCES <file>... CORPUS <folder> DEPENDS <library>...): a libFuzzer program, or one that
# replays files through the same LLVMFuzzerTestOneInput. Replaying the corpus is a test either way.
function(vm_add_fuzzer name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "CORPUS" "SOURCES;DEPENDS")
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE vm_options ${arg_DEPENDS})
  if(VM_LIBFUZZER)
    target_compile_options(${name} PRIVATE -fsanitize=fuzzer-no-link)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    set(arguments -runs=0)
  else()
    target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/fuzz/replay/replay_main.cpp)
    set(arguments)
  endif()
  if(EXISTS ${arg_CORPUS})
    add_test(NAME ${name}_corpus COMMAND ${name} ${arguments} ${arg_CORPUS})
    set_tests_properties(${name}_corpus PROPERTIES TIMEOUT 300 LABELS fuzz)
  endif()
endfunction()
