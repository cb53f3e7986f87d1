# The tests, one binary a ring. ./test.sh runs them and counts their cases; ctest runs them whole.
find_package(GTest REQUIRED)
enable_testing()

# Everything of these folders but the files named *Test.cpp, which are test cases of the logic ring.
file(GLOB_RECURSE support_sources CONFIGURE_DEPENDS RELATIVE ${CMAKE_SOURCE_DIR}
     tests/support/*.cpp tests/headless/*.cpp tests/contract/*.cpp)
list(FILTER support_sources EXCLUDE REGEX "Test\\.cpp$")
tessel_library_of(tessel_test_support ${support_sources})
tessel_link(tessel_test_support tessel_contract tessel_logic tessel_data tessel_system pugixml::pugixml GTest::gtest)
tessel_scope(tessel_test_support support_scope)
target_compile_definitions(tessel_test_support ${support_scope}
                           TESSEL_FORMS_DIR="${CMAKE_SOURCE_DIR}/desktop/forms")
tessel_precompile_std(tessel_test_support)

# tessel_test(<ring> <main library> <library>... [EXCEPT <regex>] FILES <glob>...): the binary
# <ring>_tests of the sources that match.
function(tessel_test ring main)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "EXCEPT" FILES)
  set(binary ${ring}_tests)
  tessel_executable(${binary} EXCEPT "${arg_EXCEPT}" ${arg_FILES})
  if(TARGET ${binary})
    target_link_libraries(${binary} PRIVATE tessel_test_support ${arg_UNPARSED_ARGUMENTS} ${main} GTest::gmock)
    tessel_precompile_std(${binary} <gmock/gmock.h> <gtest/gtest.h>)
    add_test(NAME ${ring} COMMAND ${binary})
    set_tests_properties(${ring} PROPERTIES LABELS ${ring})
  endif()
endfunction()

tessel_test(logic GTest::gtest_main tessel_logic tessel_desktop_plain
            FILES tests/logic/*.cpp tests/system/*.cpp tests/contract/*Test.cpp tests/headless/*Test.cpp
                  tests/desktop/plain/*.cpp)
if(NOT TESSEL_LOGIC_ONLY)
  include(cmake/ServerTargets.cmake)
  tessel_test(data GTest::gtest_main tessel_drivers tessel_sheets tessel_test_servers EXCEPT /servers/
              FILES tests/data/*.cpp)
  if(TARGET data_tests)
    target_compile_definitions(data_tests
      PRIVATE TESSEL_DATA_FIXTURES="${CMAKE_SOURCE_DIR}/tests/data/fixtures")
  endif()
  tessel_test(desktop GTest::gtest tessel_desktop tessel_drivers tessel_system tessel_logic tessel_test_servers Qt6::Test
              EXCEPT /plain/ FILES tests/desktop/*.cpp)
  if(TARGET desktop_tests)
    set_target_properties(desktop_tests PROPERTIES AUTOMOC ON)
    target_compile_definitions(desktop_tests
      PRIVATE TESSEL_SAMPLE_SCRIPT="${CMAKE_SOURCE_DIR}/samples/make_shop.py")
  endif()
endif()

if(EXISTS ${CMAKE_SOURCE_DIR}/tests/text/check.py)
  find_package(Python3 COMPONENTS Interpreter)
  if(Python3_FOUND)
    add_test(NAME text COMMAND ${Python3_EXECUTABLE} ${CMAKE_SOURCE_DIR}/tests/text/check.py)
    set_tests_properties(text PROPERTIES LABELS text)
  endif()
endif()
