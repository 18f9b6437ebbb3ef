# Asks the binary tools, which know nothing of our own reader, what the built plug-in exports and imports.
#   cmake -DOBJDUMP=<objdump> -DPLUGIN=<file> -P check-plugin-file.cmake
cmake_minimum_required(VERSION 3.25)

execute_process(COMMAND ${OBJDUMP} -p ${PLUGIN} OUTPUT_VARIABLE text RESULT_VARIABLE result)
if(result)
  message(FATAL_ERROR "objdump can't read ${PLUGIN}")
endif()

# The name table comes last in the listing of exports: "\t[   0] PlugInMain".
string(REGEX MATCH "\\[Ordinal/Name Pointer\\] Table[^\n]*\n((\t\\[[ 0-9]+\\] [^\n]*\n)+)" table "${text}")
string(REGEX REPLACE "\t\\[[ 0-9]+\\] ([^\n]*)\n" "\\1;" exports "${CMAKE_MATCH_1}")
list(REMOVE_ITEM exports "")
if(NOT exports STREQUAL "PlugInMain;_DissolveProc@16")
  message(FATAL_ERROR "exports are: ${exports}")
endif()

string(REGEX MATCHALL "DLL Name: [^\n]*" imports "${text}")
if(NOT imports)
  message(FATAL_ERROR "no imports found")
endif()
foreach(line IN LISTS imports)
  string(REPLACE "DLL Name: " "" name "${line}")
  string(TOLOWER "${name}" lower)
  if(NOT lower MATCHES "^(kernel32|user32|gdi32|comdlg32|msvcrt|advapi32|shell32)\\.dll$")
    message(FATAL_ERROR "imports ${name}, which is no library of the system")
  endif()
endforeach()

if(NOT text MATCHES "\\.rsrc")
  message(FATAL_ERROR "no resources")
endif()
message(STATUS "exports: ${exports}; imports: ${imports}")
