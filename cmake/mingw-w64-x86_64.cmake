# Cross-builds for 64-bit Windows with mingw-w64 (posix threads) and runs programs with Wine's loader.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(VL_MINGW_TRIPLE x86_64-w64-mingw32)

set(CMAKE_C_COMPILER ${VL_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VL_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${VL_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${VL_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# The loader itself: the wrapper script prints hints about missing 32-bit support.
find_program(VL_WINE_LOADER NAMES wine64 PATHS /usr/lib/wine NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(VL_WINE_LOADER)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VL_WINE_LOADER})
endif()
