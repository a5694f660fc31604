# The compiler's runtime DLLs that our programs and libraries need: copied beside the programs of the build tree, and
# installed beside the product's DLLs.
set(VL_RUNTIME_DLLS)
foreach(dll libstdc++-6.dll libgcc_s_seh-1.dll libwinpthread-1.dll)
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
