# What every target of the project shares: language level, warnings, visibility, sanitizers.

function(vl_target_defaults target)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    BUILD_RPATH "$ORIGIN"
    INSTALL_RPATH "$ORIGIN;$ORIGIN/../${CMAKE_INSTALL_LIBDIR}")
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wshadow -Wnon-virtual-dtor)
  if(WIN32)
    target_compile_definitions(${target} PRIVATE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX)
    # 0x0601: the oldest system that the library runs on without late lookups. The platform's own formats, not the
    # C99 ones of mingw: %s in a wide format is wide text.
    target_compile_definitions(${target} PUBLIC _WIN32_WINNT=0x0601 PRIVATE __USE_MINGW_ANSI_STDIO=0)
  else()
    # Calls inside a library are direct, and calls out of it save the jump through the linkage table.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition -fno-plt)
  endif()
  if(VLHOSTKIT_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${VLHOSTKIT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(${target} PRIVATE -fsanitize=${VLHOSTKIT_SANITIZE})
  endif()
endfunction()

# A shared library of the product. NAME is the library's name without prefix and ending; on Windows it carries a
# version resource with DESCRIPTION.
function(vl_shared_library_defaults target)
  cmake_parse_arguments(ARG "" "NAME;DESCRIPTION" "" ${ARGN})
  vl_target_defaults(${target})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME "${ARG_NAME}")
  if(WIN32)
    set_target_properties(${target} PROPERTIES PREFIX "")
    target_link_options(${target} PRIVATE -Wl,--exclude-all-symbols)
    set(VL_RC_NAME "${ARG_NAME}.dll")
    set(VL_RC_DESCRIPTION "${ARG_DESCRIPTION}")
    configure_file("${PROJECT_SOURCE_DIR}/cmake/version.rc.in" "${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc" @ONLY)
    target_sources(${target} PRIVATE "${CMAKE_CURRENT_BINARY_DIR}/${target}-version.rc")
  else()
    set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    if(NOT VLHOSTKIT_SANITIZE)
      target_link_options(${target} PRIVATE -Wl,-z,defs)  # sanitizer runtimes come with the program
    endif()
  endif()
endfunction()

# For 32-bit programs the compiler ends the name of a WINAPI function in the size of its arguments ("MSIDeleteFile@4").
# The named functions of a DLL, with one argument of that size, are exported without it, since installers look them up
# by name, while the import library has the names that compilers ask for.
function(vl_export_plain_names target)
  if(NOT WIN32 OR NOT CMAKE_SIZEOF_VOID_P EQUAL 4)
    return()
  endif()
  set(definitions "${CMAKE_CURRENT_BINARY_DIR}/${target}.def")
  target_link_options(${target} PRIVATE -Wl,--kill-at "-Wl,--output-def,${definitions}")
  list(JOIN ARGN "|" names)
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND sed -E -i "s/ = [^ ]*//; s/^( +(${names})) /\\1@4 /" "${definitions}"
    COMMAND "${CMAKE_DLLTOOL}" -k --dllname $<TARGET_FILE_NAME:${target}> -d "${definitions}"
            -l $<TARGET_LINKER_FILE:${target}>
    VERBATIM)
endfunction()
