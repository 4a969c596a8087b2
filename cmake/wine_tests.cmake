# The end-to-end tests once more, as "wine.NAME", on the program for Windows. It comes from its own
# build (preset "windows"); until it is there, these tests are disabled, but not where CI is set.
set(OVRIK_WINDOWS_PROGRAM "" CACHE FILEPATH "The Windows program to test under Wine")
find_program(OVRIK_WINE NAMES wine64 PATHS /usr/lib/wine)

if(OVRIK_WINDOWS_PROGRAM AND OVRIK_WINE)
  set(wine_folder "${PROJECT_BINARY_DIR}/wine")
  # The two runtimes are ones that Wine would ask to install; nothing here needs them. Of Wine's own
  # messages the tests want the one that tells why it did not start.
  set(wine_environment "WINEPREFIX=${wine_folder};WINEDEBUG=-all,err+virtual;WINEDLLOVERRIDES=mscoree,mshtml="
    "OVRIK_WINE=${OVRIK_WINE}" "OVRIK_PROGRAM=${OVRIK_WINDOWS_PROGRAM}")

  # Wine has one user, who may read everything.
  gtest_discover_tests(ovrik_e2e DISCOVERY_TIMEOUT 300 TEST_PREFIX wine. TEST_LIST wine_tests
    TEST_FILTER -roads.an_unreadable_file*)
  # The tests are known to ctest alone, and so is whether the program has been built.
  set(properties "${PROJECT_BINARY_DIR}/wine_properties.cmake")
  file(GENERATE OUTPUT "${properties}" CONTENT "set_tests_properties(\${wine_tests} PROPERTIES
  TIMEOUT 900 FIXTURES_REQUIRED wine ENVIRONMENT \"${wine_environment}\")
if(NOT EXISTS \"${OVRIK_WINDOWS_PROGRAM}\" AND NOT DEFINED ENV{CI})
  set_tests_properties(\${wine_tests} wine_start wine_stop PROPERTIES DISABLED TRUE)
endif()
")
  set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${properties}")

  # What Wine keeps for the tests is made at the first run and stays; its server goes.
  add_test(NAME wine_start COMMAND "${PROJECT_SOURCE_DIR}/tests/wine/start" "${wine_folder}")
  add_test(NAME wine_stop COMMAND "${PROJECT_SOURCE_DIR}/tests/wine/stop")
  set_tests_properties(wine_start PROPERTIES FIXTURES_SETUP wine)
  set_tests_properties(wine_stop PROPERTIES FIXTURES_CLEANUP wine)
  set_tests_properties(wine_start wine_stop PROPERTIES
    TIMEOUT 300 ENVIRONMENT "${wine_environment}")
endif()
