# Cross-builds for 32-bit Windows programs and installers with mingw-w64 (posix threads), and runs programs with Wine's
# loader for them where it is installed.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(VL_MINGW_TRIPLE i686-w64-mingw32)
set(VL_WINE_NAME wine)
include("${CMAKE_CURRENT_LIST_DIR}/mingw-w64.cmake")
