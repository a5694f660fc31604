# Installation: libraries, headers, the CMake package and the pkg-config file.
include(CMakePackageConfigHelpers)

set(VL_PACKAGE_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/vlhostkit")
set(vl_targets vlhostkitu vlafx txlogu tx_cext)
if(NOT WIN32)
  list(APPEND vl_targets vlplatform)
endif()

install(TARGETS ${vl_targets} EXPORT vlhostkitTargets
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}"
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}")
# Loaded by name, from the folder of the library that looks for it.
install(TARGETS tx_hostkit_winrt LIBRARY DESTINATION "$<IF:$<BOOL:${WIN32}>,${CMAKE_INSTALL_BINDIR},${CMAKE_INSTALL_LIBDIR}>")
if(WIN32)
  install(FILES ${VL_RUNTIME_DLLS} DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()

install(DIRECTORY include/vlhostkit afx/include/vlafx siblings/txlogu/include/txlogu siblings/tx.cext/include/tx.cext
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
if(NOT WIN32)
  install(DIRECTORY platform/include/vlplatform DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}" FILES_MATCHING PATTERN "*.h")
endif()

install(EXPORT vlhostkitTargets NAMESPACE vlhostkit:: DESTINATION "${VL_PACKAGE_DIR}")
configure_package_config_file(cmake/vlhostkitConfig.cmake.in "${PROJECT_BINARY_DIR}/vlhostkitConfig.cmake"
  INSTALL_DESTINATION "${VL_PACKAGE_DIR}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/vlhostkitConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES "${PROJECT_BINARY_DIR}/vlhostkitConfig.cmake" "${PROJECT_BINARY_DIR}/vlhostkitConfigVersion.cmake"
  DESTINATION "${VL_PACKAGE_DIR}")

if(WIN32)
  set(VL_PC_LIBS "-lvlhostkitu -lvlafx -ltxlogu")
else()
  set(VL_PC_LIBS "-lvlhostkitu -lvlafx -ltxlogu -lvlplatform")
endif()
file(RELATIVE_PATH VL_PC_PREFIX "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(cmake/vlhostkit.pc.in "${PROJECT_BINARY_DIR}/vlhostkit.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/vlhostkit.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")
