# Compiler settings shared by all targets, and the helpers that declare a room, a library and a test program.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_package(PkgConfig REQUIRED)
pkg_check_modules(SQLITE REQUIRED IMPORTED_TARGET sqlite3)
pkg_check_modules(UTF8PROC REQUIRED IMPORTED_TARGET libutf8proc)
if(DISCARO_WINDOWS)
  find_package(Qt6 6.4 REQUIRED COMPONENTS Widgets Svg)
endif()

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor)
if(DISCARO_WERROR)
  add_compile_options(-Werror)
endif()
if(DISCARO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(DISCARO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=undefined)
  add_link_options(-fsanitize=address,undefined)
endif()

# discaro_room(NAME libraries...): the room's static library from all its .cpp files. A room links only what its
# row in docs/architecture.md allows.
function(discaro_room name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  discaro_library(${name} SOURCES ${sources} LINKS ${ARGN})
endfunction()

# discaro_library(NAME SOURCES files... LINKS libraries...)
function(discaro_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(discaro_${name} STATIC ${ARG_SOURCES})
  target_include_directories(discaro_${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
  target_link_libraries(discaro_${name} PUBLIC ${ARG_LINKS})
endfunction()

# discaro_tests(NAME libraries...): one test program from the folder's .cpp files, those of the inner rooms included,
# its cases found by CTest. A folder below that has a CMakeLists.txt makes a program of its own.
function(discaro_tests name)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  file(GLOB own CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*/CMakeLists.txt)
  foreach(program IN LISTS own)
    cmake_path(GET program PARENT_PATH folder)
    list(FILTER sources EXCLUDE REGEX "^${folder}/")
  endforeach()
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE ${ARGN} discaro_test_support GTest::gtest GTest::gmock)
  # Behind a precompiled header GCC 12 takes the library's strings for ours and warns of what they never do.
  target_compile_options(test_${name} PRIVATE
    $<$<CXX_COMPILER_ID:GNU>:-Wno-array-bounds;-Wno-restrict;-Wno-stringop-overflow;-Wno-stringop-overread>)
  if(discaro_test_windows IN_LIST ARGN)
    target_precompile_headers(test_${name} REUSE_FROM discaro_test_headers_of_windows)
  else()
    target_precompile_headers(test_${name} REUSE_FROM discaro_test_headers)
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX "${name}." DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 300 ENVIRONMENT
    "QT_QPA_PLATFORM=offscreen;LSAN_OPTIONS=suppressions='${CMAKE_SOURCE_DIR}/tests/support/lsan.supp':print_suppressions=0")
endfunction()
