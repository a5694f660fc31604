# The compiler's runtime DLLs that our programs and libraries need: copied beside the programs of the build tree, and
# installed beside the product's DLLs.
set(VL_RUNTIME_DLLS)
# 32-bit programs unwind by tables of another kind.
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(vl_libgcc libgcc_s_dw2-1.dll)
else()
  set(vl_libgcc libgcc_s_seh-1.dll)
endif()
foreach(dll libstdc++-6.dll ${vl_libgcc} libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${dll} OUTPUT_VARIABLE path OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT EXISTS "${path}")
    # The thread library belongs to the C runtime, whose folder the compiler does not search for DLLs.
    set(path "/usr/${VL_MINGW_TRIPLE}/lib/${dll}")
  endif()
  if(NOT EXISTS "${path}")
    message(FATAL_ERROR "The compiler's runtime library ${dll} was not found.")
  endif()
  list(APPEND VL_RUNTIME_DLLS "${path}")
  file(COPY "${path}" DESTINATION "${PROJECT_BINARY_DIR}/bin")
endforeach()

# mingw-w64 brings the import library of sensapi.dll for 64-bit programs only.
set(VL_SENSAPI sensapi)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(VL_SENSAPI "${PROJECT_BINARY_DIR}/lib/libsensapi.a")
  file(WRITE "${PROJECT_BINARY_DIR}/lib/sensapi.def" "LIBRARY sensapi.dll\nEXPORTS\nIsNetworkAlive@4\n")
  execute_process(COMMAND ${CMAKE_DLLTOOL} -k -d "${PROJECT_BINARY_DIR}/lib/sensapi.def" -l "${VL_SENSAPI}"
    COMMAND_ERROR_IS_FATAL ANY)
endif()
