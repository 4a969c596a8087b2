# The manifest and the version of the Windows program.
enable_language(RC)
set(resources src/driver/ovrik.rc)
target_sources(ovrik PRIVATE ${resources})
set_source_files_properties(${resources} PROPERTIES
  OBJECT_DEPENDS
  "${PROJECT_SOURCE_DIR}/src/driver/ovrik.manifest;${generated_folder}/base/version.h")
