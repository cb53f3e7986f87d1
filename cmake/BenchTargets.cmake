# The benchmarks: tessel_bench, on Google Benchmark.
find_package(benchmark REQUIRED)
tessel_executable(tessel_bench bench/*.cpp)
if(TARGET tessel_bench)
  target_link_libraries(tessel_bench PRIVATE tessel_logic benchmark::benchmark benchmark::benchmark_main)
  if(NOT TESSEL_LOGIC_ONLY)
    target_link_libraries(tessel_bench PRIVATE tessel_data tessel_desktop tessel_system)
  endif()
endif()

# The sidebar and the completion list on real windows.
if(NOT TESSEL_LOGIC_ONLY)
  tessel_executable(workbench_bench bench/workbench/*.cpp)
  target_link_libraries(workbench_bench PRIVATE tessel_logic tessel_data tessel_desktop tessel_system)
endif()
