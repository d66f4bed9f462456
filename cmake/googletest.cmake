# GoogleTest from Debian's sources, which build with either compiler: GTest::gtest_main.

set(googletest_source /usr/src/googletest)
if(NOT EXISTS ${googletest_source}/CMakeLists.txt)
  message(FATAL_ERROR "The tests need the sources of GoogleTest in ${googletest_source}: "
    "run scripts/setup, or configure with -DFORMULA_TESTS=OFF")
endif()
set(INSTALL_GTEST OFF)
set(BUILD_GMOCK OFF)
set(gtest_force_shared_crt ON)
add_subdirectory(${googletest_source} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
include(GoogleTest)

# A test program of its own, run case by case: formula_test(NAME SOURCES ... LINK ...).
function(formula_test name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "" "SOURCES;LINK")
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE formula_options ${ARG_LINK} GTest::gtest_main)
  gtest_discover_tests(${name} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST
    DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
endfunction()
