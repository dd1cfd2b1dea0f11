# Install rules: the two shared libraries, the static test helpers, their
# public headers, a CMake package (find_package(orvix1 CONFIG) ->
# orvix1::orvix1, orvix1::talvar2, orvix1::testing and the function
# orvix1_add_resource_archive) and a pkg-config file (the two libraries).

set(ORVIX1_CMAKE_INSTALL_DIR "${CMAKE_INSTALL_LIBDIR}/cmake/orvix1")
set(ORVIX1_PKGCONFIG_INSTALL_DIR "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

# orvix1 finds talvar2 beside itself wherever the prefix is.
set_target_properties(orvix1 PROPERTIES INSTALL_RPATH "$ORIGIN")

install(TARGETS talvar2 orvix1 orvix1_testing
  EXPORT orvix1Targets
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  ARCHIVE DESTINATION "${CMAKE_INSTALL_LIBDIR}"
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")

install(DIRECTORY "${PROJECT_SOURCE_DIR}/talvar2/include/" "${PROJECT_SOURCE_DIR}/include/"
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}"
  FILES_MATCHING PATTERN "*.h")

# The shipped palettes, for ui_settings_configure_t::apply_theme.
# The package exports the folder as orvix1_THEMES_DIR.
set(ORVIX1_THEMES_INSTALL_DIR "${CMAKE_INSTALL_DATADIR}/orvix1/themes")
install(FILES "${PROJECT_SOURCE_DIR}/themes/light.xml" "${PROJECT_SOURCE_DIR}/themes/dark.xml"
  DESTINATION "${ORVIX1_THEMES_INSTALL_DIR}")

install(EXPORT orvix1Targets
  NAMESPACE orvix1::
  DESTINATION "${ORVIX1_CMAKE_INSTALL_DIR}")

configure_package_config_file(
  "${CMAKE_CURRENT_LIST_DIR}/orvix1Config.cmake.in"
  "${PROJECT_BINARY_DIR}/orvix1Config.cmake"
  INSTALL_DESTINATION "${ORVIX1_CMAKE_INSTALL_DIR}"
  PATH_VARS ORVIX1_THEMES_INSTALL_DIR)
# The library's ABI changes with its major version (the SOVERSION).
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/orvix1ConfigVersion.cmake"
  VERSION "${PROJECT_VERSION}"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_CURRENT_LIST_DIR}/orvix1WxTarget.cmake"
  "${CMAKE_CURRENT_LIST_DIR}/orvix1ResourceArchive.cmake"
  "${PROJECT_BINARY_DIR}/orvix1Config.cmake"
  "${PROJECT_BINARY_DIR}/orvix1ConfigVersion.cmake"
  DESTINATION "${ORVIX1_CMAKE_INSTALL_DIR}")

# pkg-config: the prefix is found relative to the .pc file, so that
# `cmake --install --prefix` to any directory gives a working file.
function(orvix1_configure_pkgconfig)
  file(RELATIVE_PATH pc_to_prefix
    "/orvix1-prefix/${ORVIX1_PKGCONFIG_INSTALL_DIR}" "/orvix1-prefix")
  set(ORVIX1_PC_PREFIX "\${pcfiledir}/${pc_to_prefix}")
  string(REGEX REPLACE "/$" "" ORVIX1_PC_PREFIX "${ORVIX1_PC_PREFIX}")
  execute_process(COMMAND "${wxWidgets_CONFIG_EXECUTABLE}" --cxxflags
    OUTPUT_VARIABLE ORVIX1_PC_WX_CFLAGS OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND "${wxWidgets_CONFIG_EXECUTABLE}" --libs core,base,html,xrc,xml
    OUTPUT_VARIABLE ORVIX1_PC_WX_LIBS OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "[ \t\r\n]+" " " ORVIX1_PC_WX_LIBS "${ORVIX1_PC_WX_LIBS}")
  configure_file("${CMAKE_CURRENT_LIST_DIR}/orvix1.pc.in" "${PROJECT_BINARY_DIR}/orvix1.pc" @ONLY)
endfunction()

if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  message(WARNING "orvix1.pc is not generated for an absolute CMAKE_INSTALL_LIBDIR")
else()
  orvix1_configure_pkgconfig()
  install(FILES "${PROJECT_BINARY_DIR}/orvix1.pc" DESTINATION "${ORVIX1_PKGCONFIG_INSTALL_DIR}")
endif()

# The package check installs this build into a scratch prefix and builds an
# outside project against it. A sanitizer build is left out: its libraries
# need the sanitizer runtime that an ordinary consumer does not link.
if(ORVIX1_BUILD_TESTS AND NOT ORVIX1_SANITIZE AND NOT ORVIX1_SANITIZE_THREAD)
  add_test(NAME package_check
    COMMAND "${PROJECT_SOURCE_DIR}/scripts/check-package" --no-build "${PROJECT_BINARY_DIR}")
  set_tests_properties(package_check PROPERTIES LABELS package TIMEOUT 300)
endif()
