# Fails when the code calls a C runtime function that MSVC deprecates (C4996, an error under /WX)
# while the MSVC build does not define _CRT_SECURE_NO_WARNINGS, which only a real MSVC build would
# otherwise tell. Run from the source folder: cmake -P cmake/check_crt_deprecations.cmake
cmake_minimum_required(VERSION 3.20)
include(${CMAKE_CURRENT_LIST_DIR}/MsvcDefinitions.cmake)
if(_CRT_SECURE_NO_WARNINGS IN_LIST QUORVEL_MSVC_DEFINITIONS)
  return()
endif()

set(deprecated
    asctime ctime fopen freopen fscanf getenv gmtime localtime mbstowcs scanf sprintf sscanf
    strcat strcpy strerror strncat strncpy strtok swprintf swscanf tmpfile tmpnam vsprintf wcscat
    wcscpy wcsncpy wcstombs wcstok _wfopen _wgetenv)
list(JOIN deprecated "|" names)
# A call, plain or through std::, never a member of the same name; comment lines are skipped.
set(call "(^|[^A-Za-z0-9_.>]|std::)(${names}) *\\(")

get_filename_component(root ${CMAKE_CURRENT_LIST_DIR} DIRECTORY)
file(GLOB_RECURSE sources LIST_DIRECTORIES false
     ${root}/src/*.cpp ${root}/src/*.h ${root}/standin_stitcher/*.cpp ${root}/standin_stitcher/*.h
     ${root}/tools/*.cpp ${root}/tools/*.h ${root}/tests/*.cpp ${root}/tests/*.h)
set(uses "")
foreach(source IN LISTS sources)
  file(STRINGS ${source} lines REGEX "${call}")
  foreach(line IN LISTS lines)
    if(NOT line MATCHES "^ *//")
      file(RELATIVE_PATH name ${root} ${source})
      string(STRIP "${line}" line)
      string(APPEND uses "\n  ${name}: ${line}")
    endif()
  endforeach()
endforeach()
if(uses)
  message(FATAL_ERROR "MSVC deprecates these calls (C4996) and the windows-msvc build does not "
                      "define _CRT_SECURE_NO_WARNINGS (cmake/MsvcDefinitions.cmake):${uses}")
endif()
