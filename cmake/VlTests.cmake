# How test programs are made and run, on both targets.
#
#   vl_add_test(<name> SOURCES <file>... [LIBRARIES <target>...] [ENVIRONMENT <NAME=value>...])
#
# makes a GoogleTest program and one ctest test of that name, linked with the library and the test support. One test a
# program: asking a program for its cases would start Wine before the fixture that sets it up.
#
#   vl_add_test_run(<test-name> EXECUTABLE <program> [FILTER <pattern>] [ENVIRONMENT <NAME=value>...])
#
# runs such a program once more, under another environment (TZ=Australia/Sydney) or with some of its cases.
#
#   vl_add_check(<test-name> COMMAND <command>... [ENVIRONMENT <NAME=value>...] [SETS_UP <fixture>]
#                [REQUIRES <fixture>] [SKIPPABLE] [FILES_ONLY])
#
# runs anything else as a test. A SKIPPABLE one ends with 77 if it has nothing to run on; FILES_ONLY says that it runs
# no program of the target.
#
# All of them run in the build folder and are ended after two minutes. Where nothing can run the target's programs,
# they are built, and only the checks of files are registered.

set(VL_PROGRAMS_RUN TRUE)
if(WIN32 AND NOT CMAKE_CROSSCOMPILING_EMULATOR)
  set(VL_PROGRAMS_RUN FALSE)
  message(STATUS "No Wine for programs of this width: tests that run them are built and NOT registered")
endif()

set(VL_TEST_ENVIRONMENT)
if(WIN32)
  # Wine reads arguments and names of files by the locale, and in that of C takes their letters apart.
  list(APPEND VL_TEST_ENVIRONMENT "WINEPREFIX=${PROJECT_BINARY_DIR}/wine-prefix" WINEDEBUG=-all
    WINEDLLOVERRIDES=winedbg.exe=d LC_ALL=C.UTF-8)
elseif(VLHOSTKIT_SANITIZE MATCHES "thread")
  list(APPEND VL_TEST_ENVIRONMENT TSAN_OPTIONS=halt_on_error=1:second_deadlock_stack=1:allocator_may_return_null=1)
elseif(VLHOSTKIT_SANITIZE)
  list(APPEND VL_TEST_ENVIRONMENT
    ASAN_OPTIONS=detect_leaks=1:detect_stack_use_after_return=1:strict_string_checks=1:check_initialization_order=1:allocator_may_return_null=1
    UBSAN_OPTIONS=print_stacktrace=1)
endif()

if(WIN32)
  set(VLHOSTKIT_GTEST_SOURCE /usr/src/googletest CACHE PATH "Sources of GoogleTest, built for the Windows target")
  if(NOT EXISTS "${VLHOSTKIT_GTEST_SOURCE}/CMakeLists.txt")
    message(FATAL_ERROR "There are no GoogleTest sources in ${VLHOSTKIT_GTEST_SOURCE}: set VLHOSTKIT_GTEST_SOURCE, "
      "or VLHOSTKIT_TESTS=OFF.")
  endif()
  block()
    set(BUILD_GMOCK OFF)
    set(INSTALL_GTEST OFF)
    set(CMAKE_COMPILE_WARNING_AS_ERROR OFF)
    set(CMAKE_WARN_DEPRECATED OFF)
    add_subdirectory("${VLHOSTKIT_GTEST_SOURCE}" "${PROJECT_BINARY_DIR}/googletest" EXCLUDE_FROM_ALL SYSTEM)
    target_compile_options(gtest PRIVATE -w)
    target_compile_options(gtest_main PRIVATE -w)
  endblock()
  if(NOT TARGET GTest::gtest)
    add_library(GTest::gtest ALIAS gtest)
    add_library(GTest::gtest_main ALIAS gtest_main)
  endif()

  # Wine's services live as long as their server, and inherit the output of the program that starts it, which ctest
  # would then wait for. So a fixture starts server and services without any, and ends them.
  if(VL_PROGRAMS_RUN)
    cmake_path(GET CMAKE_CROSSCOMPILING_EMULATOR PARENT_PATH vl_wine_folder)
    add_test(NAME wine.start COMMAND sh "${PROJECT_SOURCE_DIR}/cmake/wine-start.sh" ${CMAKE_CROSSCOMPILING_EMULATOR})
    add_test(NAME wine.stop COMMAND "${vl_wine_folder}/wineserver" -k)
    set_tests_properties(wine.start wine.stop PROPERTIES ENVIRONMENT "${VL_TEST_ENVIRONMENT}" TIMEOUT 120)
    set_tests_properties(wine.start PROPERTIES FIXTURES_SETUP wine)
    set_tests_properties(wine.stop PROPERTIES FIXTURES_CLEANUP wine)
  endif()
else()
  find_package(GTest REQUIRED)
endif()

function(vl_set_test_properties test environment)
  set_tests_properties(${test} PROPERTIES
    ENVIRONMENT "${VL_TEST_ENVIRONMENT};${environment}"
    WORKING_DIRECTORY "${PROJECT_BINARY_DIR}"
    TIMEOUT 120)
  if(WIN32 AND VL_PROGRAMS_RUN)
    set_tests_properties(${test} PROPERTIES FIXTURES_REQUIRED wine)
  endif()
endfunction()

function(vl_add_test_run test)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "EXECUTABLE;FILTER" "ENVIRONMENT")
  set(arguments --gtest_brief=1 --gtest_output=xml:test-results/${test}.xml)
  if(ARG_FILTER)
    list(APPEND arguments "--gtest_filter=${ARG_FILTER}")
  endif()
  if(NOT VL_PROGRAMS_RUN)
    return()
  endif()
  add_test(NAME ${test} COMMAND ${ARG_EXECUTABLE} ${arguments})
  vl_set_test_properties(${test} "${ARG_ENVIRONMENT}")
endfunction()

function(vl_add_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LIBRARIES;ENVIRONMENT")
  add_executable(${name} ${ARG_SOURCES})
  vl_target_defaults(${name})
  # A program with the library's objects in it has no need of the library, whose data it would have twice.
  if(NOT vlhostkitu_objects IN_LIST ARG_LIBRARIES)
    list(APPEND ARG_LIBRARIES vlhostkitu)
  endif()
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} vl_test_watchdog vl_test_support GTest::gtest_main)
  vl_add_test_run(${name} EXECUTABLE ${name} ENVIRONMENT ${ARG_ENVIRONMENT})
endfunction()

function(vl_add_check test)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "SKIPPABLE;FILES_ONLY" "SETS_UP;REQUIRES" "COMMAND;ENVIRONMENT")
  if(NOT VL_PROGRAMS_RUN AND NOT ARG_FILES_ONLY)
    return()
  endif()
  add_test(NAME ${test} COMMAND ${ARG_COMMAND})
  vl_set_test_properties(${test} "${ARG_ENVIRONMENT}")
  if(ARG_SETS_UP)
    set_tests_properties(${test} PROPERTIES FIXTURES_SETUP ${ARG_SETS_UP})
  endif()
  if(ARG_REQUIRES)
    set_property(TEST ${test} APPEND PROPERTY FIXTURES_REQUIRED ${ARG_REQUIRES})
  endif()
  if(ARG_SKIPPABLE)
    set_tests_properties(${test} PROPERTIES SKIP_RETURN_CODE 77)
  endif()
endfunction()
