# The builders that tests and benchmarks compose their inputs with, and the small programs that
# write such inputs to files.
find_package(GTest REQUIRED)

ovrik_glob(support_sources tests/support/*.cpp)
if(support_sources)
  add_library(ovrik_test_support STATIC ${support_sources})
  set(scope PUBLIC)
else()
  add_library(ovrik_test_support INTERFACE)
  set(scope INTERFACE)
endif()
target_include_directories(ovrik_test_support ${scope} "${PROJECT_SOURCE_DIR}/tests")
target_link_libraries(ovrik_test_support ${scope} ovrik_driver GTest::gtest)

# tests/tools/x.cpp becomes the program x.
ovrik_glob(tool_sources tests/tools/*.cpp)
foreach(source IN LISTS tool_sources)
  get_filename_component(name "${source}" NAME_WE)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE ovrik_test_support)
endforeach()
