# A static program runs on an examiner's machine whatever libraries that machine has. Not every
# host can link one, so a trial link decides; the sanitizers' runtimes never can.
include(CheckCXXSourceCompiles)

if(OVRIK_SANITIZE OR OVRIK_FUZZ)
  set(OVRIK_STATIC_LINK_WORKS OFF)
else()
  set(CMAKE_REQUIRED_LINK_OPTIONS -static)
  check_cxx_source_compiles("#include <string>
    int main(int argc, char** argv) { return std::string(argv[argc - 1]).empty(); }"
    OVRIK_STATIC_LINK_WORKS)
  unset(CMAKE_REQUIRED_LINK_OPTIONS)
endif()

function(ovrik_link_statically target)
  if(OVRIK_STATIC_LINK_WORKS)
    target_link_options(${target} PRIVATE -static)
  endif()
endfunction()
