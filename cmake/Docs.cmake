# The HTML reference of the public headers, built by Doxygen into
# <build>/docs/html and installed into <prefix>/share/doc/orvix1/html.
# Only when Doxygen is installed: without it there is no reference and no
# `docs` target, and the build and the install go on without them.
# ORVIX1_BUILD_DOCS=OFF leaves the reference out even when Doxygen is there.

option(ORVIX1_BUILD_DOCS "Build and install the HTML API reference when Doxygen is found" ON)
# Whether this configuration installs the reference (the package check asks).
set(ORVIX1_DOCS_INSTALLED OFF CACHE INTERNAL "")
if(NOT ORVIX1_BUILD_DOCS)
  return()
endif()
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "Doxygen not found: no API reference (apt-get install doxygen graphviz)")
  return()
endif()
set(ORVIX1_DOCS_INSTALLED ON CACHE INTERNAL "")

set(ORVIX1_DOCS_OUTPUT_DIR "${PROJECT_BINARY_DIR}/docs")
if(DOXYGEN_DOT_FOUND)
  set(ORVIX1_DOCS_HAVE_DOT YES)
else()
  set(ORVIX1_DOCS_HAVE_DOT NO)
endif()
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${ORVIX1_DOCS_OUTPUT_DIR}/Doxyfile" @ONLY)

file(GLOB_RECURSE ORVIX1_DOCS_HEADERS CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/include/*.h" "${PROJECT_SOURCE_DIR}/talvar2/include/*.h")
# Doxygen leaves pages of removed headers behind: each run starts afresh.
add_custom_command(
  OUTPUT "${ORVIX1_DOCS_OUTPUT_DIR}/html/index.html"
  COMMAND "${CMAKE_COMMAND}" -E rm -rf "${ORVIX1_DOCS_OUTPUT_DIR}/html"
  COMMAND Doxygen::doxygen "${ORVIX1_DOCS_OUTPUT_DIR}/Doxyfile"
  DEPENDS "${ORVIX1_DOCS_OUTPUT_DIR}/Doxyfile" "${PROJECT_SOURCE_DIR}/README.md" ${ORVIX1_DOCS_HEADERS}
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
  COMMENT "API reference: ${ORVIX1_DOCS_OUTPUT_DIR}/html/index.html (warnings in warnings.log)"
  VERBATIM)
# Part of the default build, so that an install finds it.
add_custom_target(docs ALL DEPENDS "${ORVIX1_DOCS_OUTPUT_DIR}/html/index.html")
install(DIRECTORY "${ORVIX1_DOCS_OUTPUT_DIR}/html/" DESTINATION "${CMAKE_INSTALL_DOCDIR}/html")
