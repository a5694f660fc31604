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

# What a reader of the package needs, and the sample installer, if it was built.
install(FILES README.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(FILES CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}" OPTIONAL)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" FILES_MATCHING PATTERN "*.md")
if(WIN32)
  install(FILES examples/installer/product.wxs DESTINATION "${CMAKE_INSTALL_DATADIR}/vlhostkit/installer")
  install(FILES "${PROJECT_BINARY_DIR}/examples/installer/product.msi"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/vlhostkit/installer" OPTIONAL)
endif()

# What cpack makes of it: an archive for Windows, a Debian package elsewhere. A project around this one has its own.
if(NOT PROJECT_IS_TOP_LEVEL)
  return()
endif()
set(CPACK_PACKAGE_NAME "${PROJECT_NAME}")
set(CPACK_PACKAGE_VENDOR Velorin)
set(CPACK_PACKAGE_CONTACT "The vlhostkit developers")
set(CPACK_STRIP_FILES ON)  # the debugging records name the folders of the build
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "${PROJECT_NAME}-${PROJECT_VERSION}-windows-${CMAKE_SYSTEM_PROCESSOR}")
else()
  set(CPACK_GENERATOR DEB)
  set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
  set(CPACK_DEBIAN_PACKAGE_SECTION libdevel)
  find_program(VL_SHLIBDEPS dpkg-shlibdeps)
  mark_as_advanced(VL_SHLIBDEPS)
  if(VL_SHLIBDEPS)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
  endif()
endif()
include(CPack)
