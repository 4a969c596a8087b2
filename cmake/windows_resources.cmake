# The manifest and the version of the Windows program.
enable_language(RC)
set(resources src/driver/ovrik.rc)
target_sources(ovrik PRIVATE ${resources})
set(numbers ${PROJECT_VERSION_MAJOR},${PROJECT_VERSION_MINOR},0,0)
set_source_files_properties(${resources} PROPERTIES
  OBJECT_DEPENDS "${PROJECT_SOURCE_DIR}/src/driver/ovrik.manifest"
  COMPILE_DEFINITIONS "OVRIK_VERSION=${PROJECT_VERSION};OVRIK_VERSION_NUMBERS=${numbers}")
