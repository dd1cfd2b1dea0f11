# The `docs` target: the HTML reference of the public headers, built by
# Doxygen into <build>/docs/html. Only when Doxygen is installed; the build
# itself never needs it.

find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  message(STATUS "Doxygen not found: no `docs` target (apt-get install doxygen graphviz)")
  return()
endif()

set(ORVIX1_DOCS_OUTPUT_DIR "${PROJECT_BINARY_DIR}/docs")
if(DOXYGEN_DOT_FOUND)
  set(ORVIX1_DOCS_HAVE_DOT YES)
else()
  set(ORVIX1_DOCS_HAVE_DOT NO)
endif()
configure_file("${PROJECT_SOURCE_DIR}/docs/Doxyfile.in" "${ORVIX1_DOCS_OUTPUT_DIR}/Doxyfile" @ONLY)

file(GLOB_RECURSE ORVIX1_DOCS_HEADERS CONFIGURE_DEPENDS
  "${PROJECT_SOURCE_DIR}/include/*.h" "${PROJECT_SOURCE_DIR}/talvar2/include/*.h")
add_custom_command(
  OUTPUT "${ORVIX1_DOCS_OUTPUT_DIR}/html/index.html"
  COMMAND Doxygen::doxygen "${ORVIX1_DOCS_OUTPUT_DIR}/Doxyfile"
  DEPENDS "${ORVIX1_DOCS_OUTPUT_DIR}/Doxyfile" "${PROJECT_SOURCE_DIR}/README.md" ${ORVIX1_DOCS_HEADERS}
  WORKING_DIRECTORY "${PROJECT_SOURCE_DIR}"
  COMMENT "API reference: ${ORVIX1_DOCS_OUTPUT_DIR}/html/index.html (warnings in warnings.log)"
  VERBATIM)
add_custom_target(docs DEPENDS "${ORVIX1_DOCS_OUTPUT_DIR}/html/index.html")
