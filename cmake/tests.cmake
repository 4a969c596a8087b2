# ovrik_tests calls the code; ovrik_e2e runs the built program as a user does. Where Wine is there,
# ovrik_e2e also runs the program for Windows, which has a build of its own.
include(GoogleTest)

function(ovrik_add_test_program name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE ovrik_test_support GTest::gtest_main)
  target_compile_definitions(${name} PRIVATE OVRIK_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  # A busy machine may need long for the first start of a sanitized program.
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 300 PROPERTIES TIMEOUT 600
    TEST_FILTER -windows_program.*)
endfunction()

ovrik_glob(unit_sources tests/*/*_test.cpp tests/*/*/*_test.cpp)
list(FILTER unit_sources EXCLUDE REGEX "/tests/e2e/[^/]*$")
ovrik_add_test_program(ovrik_tests ${unit_sources})

ovrik_glob(e2e_sources tests/e2e/*.cpp)
ovrik_add_test_program(ovrik_e2e ${e2e_sources})
add_dependencies(ovrik_e2e ovrik)
if(TARGET fill_ntfs)
  add_dependencies(ovrik_e2e fill_ntfs)
endif()
target_compile_definitions(ovrik_e2e PRIVATE
  OVRIK_PROGRAM="$<TARGET_FILE:ovrik>"
  OVRIK_BUILD_DIR="${PROJECT_BINARY_DIR}")
include(wine_tests)
