# All of bench/ is one program; --benchmark_filter picks from it.
find_package(benchmark REQUIRED)

ovrik_glob(bench_sources bench/*_benchmark.cpp)
if(bench_sources)
  add_executable(ovrik_bench ${bench_sources})
  target_link_libraries(ovrik_bench PRIVATE ovrik_test_support benchmark::benchmark_main)
endif()
