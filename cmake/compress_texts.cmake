# Runs before a package is made of the files that were put together for it.
if(CPACK_GENERATOR STREQUAL "DEB")
  file(GLOB_RECURSE texts
    "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/ovrik.1" "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*/CHANGELOG.md")
  foreach(text IN LISTS texts)
    execute_process(COMMAND gzip -9nf "${text}" COMMAND_ERROR_IS_FATAL ANY)
  endforeach()
endif()
