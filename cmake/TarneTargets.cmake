# The few functions by which layers, tests, benchmarks and fuzz targets are declared.

add_library(tarne_options INTERFACE)
target_compile_options(tarne_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wsuggest-override)
target_compile_definitions(tarne_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS
  QT_NO_FOREACH QT_DISABLE_DEPRECATED_BEFORE=0x060400)
if(TARNE_WARNINGS_AS_ERRORS)
  target_compile_options(tarne_options INTERFACE -Werror)
endif()
if(TARNE_SANITIZE)
  # Compiled for the tests' sake, from scratch, in every run of CI: the files of a target go through
  # the compiler in a few large pieces, which halves the time. A type with internal linkage inside a
  # public one then looks like a mistake, and what one file names may hide what another names.
  set(CMAKE_UNITY_BUILD ON)
  target_compile_options(tarne_options INTERFACE -Wno-shadow)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(tarne_options INTERFACE -Wno-subobject-linkage)
  endif()
  target_compile_options(tarne_options INTERFACE
    -fsanitize=${TARNE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  if(TARNE_SANITIZE MATCHES "undefined")
    # This compiler's check of virtual tables does not know types whose tables the standard library
    # brings along, and reports exceptions and shared pointers of its own making.
    target_compile_options(tarne_options INTERFACE -fno-sanitize=vptr)
  endif()
  if(TARNE_SANITIZE MATCHES "thread")
    # Asio's header has a fence that this sanitizer does not see.
    target_compile_options(tarne_options INTERFACE -Wno-tsan)
  endif()
  target_link_options(tarne_options INTERFACE -fsanitize=${TARNE_SANITIZE})
endif()
if(TARNE_BUILD_FUZZERS)
  # Lets libFuzzer see which way an input took.
  target_compile_options(tarne_options INTERFACE -fsanitize=fuzzer-no-link
    -fsanitize-ignorelist=${PROJECT_SOURCE_DIR}/fuzz/ignored-by-sanitizers.txt)
endif()
if(TARNE_COVERAGE)
  target_compile_options(tarne_options INTERFACE --coverage)
  target_link_options(tarne_options INTERFACE --coverage)
endif()
if(CMAKE_BUILD_TYPE STREQUAL "Debug")
  # Line tables are what a backtrace needs; full debug information doubles the time of a build.
  set(CMAKE_CXX_FLAGS_DEBUG "-g1")
endif()
if(TARNE_CLANG_TIDY)
  set(CMAKE_CXX_CLANG_TIDY clang-tidy --quiet)
  # What Qt's tools generate into this folder is theirs: one check that it passes, in place of ours.
  file(WRITE ${CMAKE_BINARY_DIR}/.clang-tidy "Checks: '-*,misc-unused-alias-decls'\n")
endif()

# tarne_precompiled(<name> LINKS <targets> HEADERS <headers>)
#
# Headers that go through the compiler once for all targets of a kind. What is linked here must be
# linked by each of these, since the compiler takes the headers only where the same macros hold.
file(WRITE ${CMAKE_BINARY_DIR}/precompiled.cpp "")
function(tarne_precompiled name)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Clang wants every macro to be the same, not only those that the headers look at.
    return()
  endif()
  cmake_parse_arguments(PARSE_ARGV 1 PCH "" "" "LINKS;HEADERS")
  add_library(${name} OBJECT ${CMAKE_BINARY_DIR}/precompiled.cpp)
  set_target_properties(${name} PROPERTIES AUTOMOC OFF)
  target_link_libraries(${name} PRIVATE tarne_options ${PCH_LINKS})
  target_precompile_headers(${name} PRIVATE ${PCH_HEADERS})
endfunction()

function(tarne_reuse target precompiled)
  if(TARGET ${precompiled})
    target_precompile_headers(${target} REUSE_FROM ${precompiled})
    target_compile_options(${target} PRIVATE -Winvalid-pch)
  endif()
endfunction()

if(NOT CMAKE_UNITY_BUILD)
  tarne_precompiled(tarne_layer_headers
    LINKS Qt6::Core
    HEADERS <QByteArray> <QObject> <QString> <QStringList> <functional> <memory> <optional> <vector>)
endif()

# tarne_rooms(<target> <files>): the folders of the files are the target's include folders, so that
# a layer may have rooms and an include names the file alone.
function(tarne_rooms target)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  list(TRANSFORM ARGN REPLACE "/[^/]+$" "")
  list(REMOVE_DUPLICATES ARGN)
  target_include_directories(${target} PUBLIC ${ARGN})
endfunction()

# tarne_layer(<target> SOURCES <files> LINKS <targets>)
#
# A layer's include folders are its own rooms and those of what it links, and nothing else: an
# include of a layer that lies above does not compile.
function(tarne_layer target)
  cmake_parse_arguments(PARSE_ARGV 1 LAYER "" "" "SOURCES;LINKS")
  add_library(${target} STATIC ${LAYER_SOURCES})
  set_target_properties(${target} PROPERTIES UNITY_BUILD_BATCH_SIZE 12)
  tarne_rooms(${target} ${LAYER_SOURCES})
  target_link_libraries(${target} PUBLIC tarne_options ${LAYER_LINKS})
  tarne_reuse(${target} tarne_layer_headers)
endfunction()

# All test programs.
add_custom_target(tarne_tests)

# tarne_test(<name> SOURCES <files> LINKS <the layer under test> [LABELS <labels>] [GUI]
# [SERIAL] [BOXED] [SYSTEM] [ARGUMENTS <words>])
#
# One program a folder. Tests run with a shared main that fails on any warning (tests/support), and
# with BOXED in process and network namespaces of their own. Those of the SYSTEM run once more as an
# ordinary user where root runs the tests, since root may do what users may not.
function(tarne_test name)
  cmake_parse_arguments(PARSE_ARGV 1 TEST "BOXED;GUI;SERIAL;SYSTEM" "" "ARGUMENTS;SOURCES;LINKS;LABELS")
  add_executable(${name} ${TEST_SOURCES})
  tarne_rooms(${name} ${TEST_SOURCES})
  if(TEST_GUI)
    set(main tarne_test_main_gui)
  else()
    set(main tarne_test_main)
  endif()
  target_link_libraries(${name} PRIVATE ${main} ${TEST_LINKS} GTest::gmock)
  if(tarne_test_ui IN_LIST TEST_LINKS)
    tarne_reuse(${name} tarne_ui_test_headers)
  else()
    tarne_reuse(${name} tarne_test_headers)
  endif()
  # scripts/test runs several presets' tests as one: their names tell them apart.
  if(TARNE_SANITIZE)
    set(test ${name}.${TARNE_SANITIZE})
  else()
    set(test ${name})
  endif()
  if(TEST_BOXED)
    set(box ${PROJECT_SOURCE_DIR}/tests/support/boxed)
  endif()
  add_test(NAME ${test} COMMAND ${box} $<TARGET_FILE:${name}> ${TEST_ARGUMENTS})
  add_dependencies(tarne_tests ${name})
  # Far above what any of them takes, since they run beside others on machines of any speed.
  set_tests_properties(${test} PROPERTIES TIMEOUT 600 LABELS "${TEST_LABELS}"
    RUN_SERIAL "${TEST_SERIAL}")
  if(TEST_SYSTEM AND NOT TARNE_SANITIZE)
    tarne_test_as_user(${test} ${box} $<TARGET_FILE:${name}> ${TEST_ARGUMENTS})
  endif()
endfunction()

# tarne_test_as_user(<test> <command>...): the same test, as tests/support/as-plain-user runs it.
function(tarne_test_as_user test)
  add_test(NAME ${test}.user COMMAND ${PROJECT_SOURCE_DIR}/tests/support/as-plain-user ${ARGN})
  set_tests_properties(${test}.user PROPERTIES TIMEOUT 600 LABELS user SKIP_RETURN_CODE 77)
endfunction()

# tarne_proof(<name> <command>...): the long form of a test, as proof_<name>. `scripts/test --all` runs
# it, and ctest by its name.
function(tarne_proof name)
  if(TARNE_SANITIZE)
    return()
  endif()
  add_test(NAME proof_${name} COMMAND ${ARGN})
  set_tests_properties(proof_${name} PROPERTIES TIMEOUT 3600 LABELS proof
    ENVIRONMENT TARNE_PROOF=long)
endfunction()

# tarne_qml_module(<target> URI <uri> SOURCES <files> QML <files> LINKS <targets>)
#
# A layer that is also a static QML module: flat, whatever its rooms are. A program that uses it links `<target>plugin` and names
# the plugin's class with Q_IMPORT_QML_PLUGIN, here TARNE_StylingPlugin for the URI TARNE.Styling.
function(tarne_qml_module target)
  cmake_parse_arguments(PARSE_ARGV 1 MODULE "" "URI" "SOURCES;QML;LINKS;DEPENDENCIES")
  qt_add_library(${target} STATIC)
  set_target_properties(${target} PROPERTIES UNITY_BUILD_BATCH_SIZE 12)
  if(TARNE_SANITIZE)
    # What Qt's tools would generate and compile for every QML file is not what is looked at.
    set(cache NO_CACHEGEN)
  endif()
  foreach(file IN LISTS MODULE_QML)
    cmake_path(GET file FILENAME name)
    set_source_files_properties(${file} PROPERTIES QT_RESOURCE_ALIAS ${name})
  endforeach()
  qt_add_qml_module(${target}
    ${cache}
    URI ${MODULE_URI}
    VERSION 1.0
    RESOURCE_PREFIX /qt/qml
    IMPORT_PATH ${QT_QML_OUTPUT_DIRECTORY}
    DEPENDENCIES QtQuick ${MODULE_DEPENDENCIES}
    SOURCES ${MODULE_SOURCES}
    QML_FILES ${MODULE_QML})
  tarne_rooms(${target} ${MODULE_SOURCES})
  target_link_libraries(${target} PUBLIC tarne_options ${MODULE_LINKS})
  # What Qt's tools generate is not ours to be warned about.
  target_compile_options(${target}plugin PRIVATE -w)
  set(generated ${CMAKE_CURRENT_BINARY_DIR})
  set_source_files_properties(${generated}/${target}_qmltyperegistrations.cpp
    ${generated}/.rcc/qmlcache/${target}_qmlcache_loader.cpp PROPERTIES COMPILE_OPTIONS -w)
  if(NOT TARNE_SANITIZE)
    # They generate a file of C++ for each file of QML. A compiler takes twelve of them in a third of
    # the time, since all include the same headers.
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP
      UNITY_BUILD_CODE_BEFORE_INCLUDE "#pragma GCC diagnostic ignored \"-Wshadow\"")
    set(index 0)
    foreach(file IN LISTS MODULE_QML)
      math(EXPR group "${index} / 12")
      math(EXPR index "${index} + 1")
      string(REPLACE "." "_" file ${file})
      set_source_files_properties(${generated}/.rcc/qmlcache/${target}_${file}.cpp
        PROPERTIES UNITY_GROUP qmlcache${group})
    endforeach()
  endif()
endfunction()
