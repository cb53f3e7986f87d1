# The benchmarks: tessel_bench, on Google Benchmark, and the programs of bench/compare.sh, which
# measure one thing in one process each: ours with the allocator of the program, raw loops without.
find_package(benchmark REQUIRED)
tessel_executable(tessel_bench EXCEPT "/(compare|workbench)/" bench/*.cpp tests/support/DataSteps.cpp)
if(TARGET tessel_bench)
  target_link_libraries(tessel_bench PRIVATE tessel_logic benchmark::benchmark benchmark::benchmark_main)
  if(NOT TESSEL_LOGIC_ONLY)
    target_link_libraries(tessel_bench PRIVATE tessel_drivers tessel_desktop tessel_sheets tessel_system)
  endif()
endif()

# tessel_compare(<name> <library>... SOURCES <source>...): the program <build>/bin/<name>.
function(tessel_compare name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" SOURCES)
  add_executable(${name} ${arg_SOURCES})
  tessel_warnings(${name})
  target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR})
  target_link_libraries(${name} PRIVATE ${arg_UNPARSED_ARGUMENTS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
  add_dependencies(compare ${name})
endfunction()

if(NOT TESSEL_LOGIC_ONLY)
  include(cmake/ServerTargets.cmake)
  find_package(X11 REQUIRED)
  add_custom_target(compare DEPENDS Tessel tessel_bench)
  file(GLOB compare_loops CONFIGURE_DEPENDS bench/compare/Raw*.cpp)
  set(compare_common bench/compare/Cases.cpp bench/compare/Say.cpp bench/OrdersFile.cpp bench/OrdersSql.cpp)
  tessel_compare(compare_raw tessel_drivers PkgConfig::libpq PkgConfig::libmariadb
                 SOURCES bench/compare/raw.cpp ${compare_loops} ${compare_common} bench/RawBlock.cpp
                         bench/RawOrders.cpp)
  tessel_compare(compare_data tessel_drivers
                 SOURCES bench/compare/data.cpp ${compare_common}
                         tests/data/support/EventLog.cpp tests/data/support/PumpQueue.cpp
                         tests/support/DataSteps.cpp)
  tessel_compare(compare_window tessel_drivers tessel_desktop
                 SOURCES bench/compare/window.cpp bench/compare/Say.cpp tests/support/DataSteps.cpp)
  tessel_compare(compare_load tessel_logic tessel_drivers tessel_system
                 SOURCES bench/compare/load.cpp bench/compare/Cases.cpp bench/compare/Say.cpp
                         tests/data/support/PumpQueue.cpp tests/support/DataSteps.cpp)
  tessel_fast_allocator(compare_load)
  tessel_fast_allocator(compare_data)
  tessel_fast_allocator(compare_window)
  tessel_compare(compare_combined tessel_data SOURCES bench/compare/combined.cpp bench/compare/Cases.cpp bench/compare/Say.cpp)
  tessel_compare(compare_servers tessel_test_servers SOURCES bench/compare/servers.cpp)
  tessel_compare(compare_start_floor Qt6::Widgets ${TESSEL_QSCINTILLA} SOURCES bench/compare/start_floor.cpp)
  tessel_compare(compare_until_shown X11::X11 SOURCES bench/compare/until_shown.cpp)
endif()

# The sidebar and the completion list on real windows.
if(NOT TESSEL_LOGIC_ONLY)
  tessel_executable(workbench_bench bench/workbench/*.cpp tests/support/DataSteps.cpp)
  target_link_libraries(workbench_bench PRIVATE tessel_logic tessel_drivers tessel_desktop tessel_system)
endif()
