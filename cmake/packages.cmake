# What is handed out: the program, its man page and the texts that go with it. On Windows all of it
# lies in one folder, elsewhere where the host looks for such files.
if(WIN32)
  set(program_folder .)
  set(man_folder .)
  set(text_folder .)
  set(CPACK_GENERATOR ZIP)
  set(system_name windows-${CMAKE_SYSTEM_PROCESSOR})
else()
  set(program_folder bin)
  set(man_folder share/man/man1)
  set(text_folder share/doc/ovrik)
  set(CPACK_GENERATOR TGZ DEB)
  string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" system_name)
endif()
install(TARGETS ovrik RUNTIME DESTINATION ${program_folder})
configure_file(docs/ovrik.1.in "${PROJECT_BINARY_DIR}/ovrik.1" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/ovrik.1" DESTINATION ${man_folder})
install(FILES README.md CHANGELOG.md DESTINATION ${text_folder})

set(CPACK_PACKAGE_NAME ovrik)
set(CPACK_PACKAGE_VENDOR ovrik)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Shows the programs that a Windows machine remembers")
set(CPACK_PACKAGE_DESCRIPTION
"Finds the Shim Cache in SYSTEM registry hives, disk images, virtual disks,
memory images and raw values, and prints a row for each program.")
set(CPACK_PACKAGE_DIRECTORY "${PROJECT_SOURCE_DIR}/build/packages")
set(CPACK_PACKAGE_FILE_NAME ovrik-${PROJECT_VERSION}-${system_name})
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "ovrik maintainers <maintainers@localhost>")
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# The program is static. Where it could not be linked so, the package says what it needs.
if(NOT OVRIK_STATIC_LINK_WORKS)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
endif()
# Debian's man pages and change logs are compressed.
set(CPACK_PRE_BUILD_SCRIPTS "${PROJECT_SOURCE_DIR}/cmake/compress_texts.cmake")
include(CPack)
