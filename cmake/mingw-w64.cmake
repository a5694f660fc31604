# What the toolchain files of both widths of Windows share: the compiler for VL_MINGW_TRIPLE, and Wine's loader, whose
# name is VL_WINE_NAME and whose usual folder is VL_WINE_FOLDER.
set(CMAKE_SYSTEM_NAME Windows)

set(CMAKE_C_COMPILER ${VL_MINGW_TRIPLE}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VL_MINGW_TRIPLE}-g++-posix)
set(CMAKE_RC_COMPILER ${VL_MINGW_TRIPLE}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${VL_MINGW_TRIPLE})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE BOTH)

# The loader itself: the wrapper script prints hints about missing 32-bit support.
find_program(VL_WINE_LOADER NAMES ${VL_WINE_NAME} PATHS /usr/lib/wine NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH)
if(VL_WINE_LOADER)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${VL_WINE_LOADER})
endif()
