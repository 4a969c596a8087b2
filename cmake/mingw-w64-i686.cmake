# The same for a 32-bit Windows, and for the 32-bit side of a 64-bit one.
set(CMAKE_SYSTEM_PROCESSOR i686)
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
