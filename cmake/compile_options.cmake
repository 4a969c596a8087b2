# What every target of the project compiles with: the include roots, the warnings and, on
# request, the sanitizers. Targets get it by linking ovrik_options.

# The program and its Windows resources learn their version from here.
set(generated_folder "${PROJECT_BINARY_DIR}/generated")
configure_file("${PROJECT_SOURCE_DIR}/src/base/version.h.in" "${generated_folder}/base/version.h"
  @ONLY)

add_library(ovrik_options INTERFACE)
target_include_directories(ovrik_options INTERFACE
  "${PROJECT_SOURCE_DIR}/src" "${generated_folder}")

target_compile_options(ovrik_options INTERFACE
  -Werror -Wall -Wextra -Wpedantic
  -Wconversion -Wsign-conversion -Wdouble-promotion
  -Wshadow -Wold-style-cast -Wcast-qual -Wcast-align
  -Wformat=2 -Wundef -Wextra-semi -Wimplicit-fallthrough
  -Wnon-virtual-dtor -Woverloaded-virtual
  # Naming only the fields that matter is what designated initializers are for.
  -Wno-missing-field-initializers)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(ovrik_options INTERFACE
    -Wduplicated-cond -Wduplicated-branches -Wlogical-op -Wsuggest-override)
  if(CMAKE_CXX_COMPILER_VERSION VERSION_GREATER_EQUAL 12
      AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 takes "literal" + std::string for an overlapping copy.
    target_compile_options(ovrik_options INTERFACE -Wno-restrict)
  endif()
endif()

if(WIN32)
  target_compile_definitions(ovrik_options INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
  # Formats are those of the C standard, for which MinGW has functions of its own; the compiler
  # compares them with the system's. The POSIX builds have these warnings.
  target_compile_options(ovrik_options INTERFACE -Wno-format -Wno-format-nonliteral)
else()
  # Disk images are larger than a 32-bit host's plain off_t.
  target_compile_definitions(ovrik_options INTERFACE _FILE_OFFSET_BITS=64)
endif()

if(OVRIK_SANITIZE OR OVRIK_FUZZ)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
  target_compile_options(ovrik_options INTERFACE ${sanitizers} -fno-omit-frame-pointer)
  target_link_options(ovrik_options INTERFACE ${sanitizers})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The instrumentation confuses the warnings that follow values through the code;
    # the release build has them.
    target_compile_options(ovrik_options INTERFACE
      -Wno-maybe-uninitialized -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endif()
if(OVRIK_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "OVRIK_FUZZ needs clang: libFuzzer is part of it")
  endif()
  target_compile_options(ovrik_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
