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

# Fills NTFS volumes; the tests that need it say so where it could not be built.
find_path(NTFS_3G_INCLUDE ntfs-3g/volume.h)
find_library(NTFS_3G_LIBRARY ntfs-3g)
if(NTFS_3G_INCLUDE AND NTFS_3G_LIBRARY)
  add_executable(fill_ntfs tests/ntfs/fill_ntfs.cpp)
  # What the library's headers expect its own configuration to say.
  target_compile_definitions(fill_ntfs PRIVATE HAVE_TIME_H HAVE_SYS_STAT_H HAVE_SYS_TYPES_H)
  target_include_directories(fill_ntfs SYSTEM PRIVATE "${NTFS_3G_INCLUDE}")
  target_link_libraries(fill_ntfs PRIVATE "${NTFS_3G_LIBRARY}")
endif()

# tests/tools/x.cpp becomes the program x.
ovrik_glob(tool_sources tests/tools/*.cpp)
foreach(source IN LISTS tool_sources)
  get_filename_component(name "${source}" NAME_WE)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE ovrik_test_support)
endforeach()
