# Cross-builds for 64-bit Windows with mingw-w64 (posix threads) and runs programs with Wine's loader.
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(VL_MINGW_TRIPLE x86_64-w64-mingw32)
set(VL_WINE_NAME wine64)
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
