# Warnings, third-party headers and platform selection shared by every target of the project.

function(quorvel_warnings target)
  if(MSVC)
    # Third-party headers, included with angle brackets, are not ours to warn about.
    target_compile_options(${target} PRIVATE /W4 /WX /permissive- /utf-8 /external:anglebrackets
                                             /external:W0)
  else()
    target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
  endif()
  if(QUORVEL_MSVC_WARNINGS)
    # What clang can model of MSVC's /W4: C4267 and C4244 (narrowing to 32 bits), C4456 to C4459
    # (shadowing), C4100 (unused parameters), C4996 (deprecated declarations).
    target_compile_options(${target} PRIVATE -Wshorten-64-to-32 -Wshadow -Wunused-parameter
                                             -Wdeprecated-declarations)
  endif()
endfunction()

option(QUORVEL_MSVC_WARNINGS "Add the clang warnings that model MSVC's (linux-msvc-warnings)" OFF)
option(QUORVEL_CORE_FILE_BY_FILE "Compile the plug-in's code file by file in a unity build (linux)" OFF)

# MSVC deprecates the C runtime's plain file, environment and string calls (C4996, an error under
# /WX) in favour of its own _s variants; the project keeps the portable calls.
include(${CMAKE_CURRENT_LIST_DIR}/MsvcDefinitions.cmake)
if(MSVC)
  add_compile_definitions(${QUORVEL_MSVC_DEFINITIONS})
endif()

if(WIN32)
  # <windows.h> without the old Winsock and the rarely used APIs, so that a file (or a unity
  # build's batch) may include it before Asio's <winsock2.h>.
  add_compile_definitions(WIN32_LEAN_AND_MEAN)
  set(QUORVEL_PLATFORM_DIR win32)
else()
  set(QUORVEL_PLATFORM_DIR posix)
endif()

# Header-only Debian libraries reach the cross build through a folder that holds only them, never
# the system include folder itself.
set(QUORVEL_THIRD_PARTY_HEADERS rapidjson asio asio.hpp stb)
if(CMAKE_CROSSCOMPILING)
  set(QUORVEL_THIRD_PARTY_INCLUDE ${CMAKE_BINARY_DIR}/third_party_include)
  file(MAKE_DIRECTORY ${QUORVEL_THIRD_PARTY_INCLUDE})
  foreach(entry IN LISTS QUORVEL_THIRD_PARTY_HEADERS)
    if(EXISTS /usr/include/${entry} AND NOT EXISTS ${QUORVEL_THIRD_PARTY_INCLUDE}/${entry})
      file(CREATE_LINK /usr/include/${entry} ${QUORVEL_THIRD_PARTY_INCLUDE}/${entry} SYMBOLIC)
    endif()
  endforeach()
  add_library(quorvel_third_party INTERFACE)
  target_include_directories(quorvel_third_party SYSTEM INTERFACE ${QUORVEL_THIRD_PARTY_INCLUDE})
elseif(MSVC)
  # The maker's Windows build takes the header-only libraries from vcpkg (vcpkg.json), the
  # convention there.
  find_package(RapidJSON CONFIG REQUIRED)
  find_package(asio CONFIG REQUIRED)
  find_package(Stb REQUIRED)
  # vcpkg puts stb's headers directly in its include folder, Debian in a stb folder: the Debian
  # spelling reaches vcpkg's header through a forwarding header.
  set(QUORVEL_THIRD_PARTY_INCLUDE ${CMAKE_BINARY_DIR}/third_party_include)
  file(CONFIGURE OUTPUT ${QUORVEL_THIRD_PARTY_INCLUDE}/stb/stb_image_write.h
       CONTENT "#pragma once\n#include <stb_image_write.h>\n")
  add_library(quorvel_third_party INTERFACE)
  target_link_libraries(quorvel_third_party INTERFACE rapidjson asio::asio)
  target_include_directories(quorvel_third_party SYSTEM INTERFACE ${QUORVEL_THIRD_PARTY_INCLUDE}
                                                                   ${Stb_INCLUDE_DIR})
else()
  add_library(quorvel_third_party INTERFACE)
endif()

# Standalone Asio, configured alike for every target that includes it.
find_package(Threads REQUIRED)
add_library(quorvel_asio INTERFACE)
target_link_libraries(quorvel_asio INTERFACE quorvel_third_party Threads::Threads)
target_compile_definitions(quorvel_asio INTERFACE ASIO_STANDALONE)
if(WIN32)
  target_compile_definitions(quorvel_asio INTERFACE _WIN32_WINNT=0x0601)
  target_link_libraries(quorvel_asio INTERFACE ws2_32 mswsock)
endif()

# rapidjson, configured once for every target that uses it: its configuration header comes before
# any rapidjson header in every file of those targets.
add_library(quorvel_json INTERFACE)
target_link_libraries(quorvel_json INTERFACE quorvel_third_party)
set(QUORVEL_RAPIDJSON_CONFIG ${PROJECT_SOURCE_DIR}/src/json/rapidjson_config.h)
if(MSVC)
  target_compile_options(quorvel_json INTERFACE /FI${QUORVEL_RAPIDJSON_CONFIG})
else()
  target_compile_options(quorvel_json INTERFACE "SHELL:-include ${QUORVEL_RAPIDJSON_CONFIG}")
endif()

# GCC marks some statics of inline functions and templates as unique symbols, which keep a shared
# object mapped after dlclose: the plug-in (and the stand-in stitcher, which binds to it) loaded
# again would find its statics as the last load left them.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT WIN32)
  add_compile_options(-fno-gnu-unique)
endif()

option(QUORVEL_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
# The alignment check stays off: the stitching library's MediaInfo is byte-packed with a string at
# an odd offset, a layout the plug-in must share with it as it is.
if(QUORVEL_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=alignment -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()

option(QUORVEL_TSAN "Build with ThreadSanitizer" OFF)
if(QUORVEL_TSAN)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
  # ThreadSanitizer does not model fences, which GCC refuses to instrument; Asio's handler fences
  # only repeat the ordering that its scheduler's mutex already gives.
  target_compile_definitions(quorvel_asio INTERFACE ASIO_DISABLE_FENCED_BLOCK)
endif()

option(QUORVEL_FUZZ "Build the libFuzzer targets, with the project's code instrumented for them" OFF)
# Every target is instrumented for coverage and checked by both sanitizers (the alignment check
# stays off, as above, and clang's checks skip what cmake/ubsan_ignorelist.txt names in
# third-party headers); only the fuzz targets link libFuzzer's main.
if(QUORVEL_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize=alignment
                      -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/cmake/ubsan_ignorelist.txt
                      -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=address,undefined)
endif()
