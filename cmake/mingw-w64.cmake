# Windows programs from a POSIX host. The posix flavour of the compiler has std::thread and
# std::mutex; linking its runtime statically leaves one .exe that needs no DLL of its own.
set(CMAKE_SYSTEM_NAME Windows)
if(NOT CMAKE_SYSTEM_PROCESSOR)
  set(CMAKE_SYSTEM_PROCESSOR x86_64)
endif()
set(target ${CMAKE_SYSTEM_PROCESSOR}-w64-mingw32)

set(CMAKE_CXX_COMPILER ${target}-g++-posix)
set(CMAKE_RC_COMPILER ${target}-windres)
# Sections that stand in the file as they do in memory are mapped at the start and not read.
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--file-alignment,4096")

set(CMAKE_FIND_ROOT_PATH /usr/${target})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
