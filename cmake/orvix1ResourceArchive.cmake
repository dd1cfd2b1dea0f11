# orvix1_add_resource_archive(TARGET NAME DIR)
#
# Packs every file under DIR into the zip NAME, the form in which
# ui_resources_t::add_archive() reads a host's pictures, animations and
# their resources.xrc (which sits at the archive's root), and makes TARGET
# depend on it, so the archive is fresh whenever TARGET is built.
#
#   DIR   folder to pack; relative paths start at CMAKE_CURRENT_SOURCE_DIR.
#         Its files keep their paths relative to DIR inside the archive.
#   NAME  archive to write; relative paths start at CMAKE_CURRENT_BINARY_DIR.
#
# The archive is written again when a file under DIR changes; adding or
# removing a file is noticed at the next build through a re-configure.
# Entries carry a fixed time, so the same files give the same archive.
# Shipped with the CMake package; the project's gallery uses it too.

function(orvix1_add_resource_archive target name dir)
  if(NOT ARGC EQUAL 3)
    message(FATAL_ERROR "orvix1_add_resource_archive(TARGET NAME DIR) takes three arguments, got ${ARGC}")
  endif()
  if(NOT TARGET "${target}")
    message(FATAL_ERROR "orvix1_add_resource_archive: there is no target '${target}'")
  endif()
  get_filename_component(dir "${dir}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
  get_filename_component(archive "${name}" ABSOLUTE BASE_DIR "${CMAKE_CURRENT_BINARY_DIR}")
  if(NOT IS_DIRECTORY "${dir}")
    message(FATAL_ERROR "orvix1_add_resource_archive: '${dir}' is not a folder")
  endif()
  file(GLOB_RECURSE members CONFIGURE_DEPENDS LIST_DIRECTORIES false RELATIVE "${dir}" "${dir}/*")
  if(NOT members)
    message(FATAL_ERROR "orvix1_add_resource_archive: '${dir}' holds no files")
  endif()
  list(SORT members)
  list(TRANSFORM members PREPEND "${dir}/" OUTPUT_VARIABLE member_paths)

  add_custom_command(
    OUTPUT "${archive}"
    COMMAND "${CMAKE_COMMAND}" -E tar cf "${archive}" --format=zip --mtime=2000-01-01 -- ${members}
    WORKING_DIRECTORY "${dir}"
    DEPENDS ${member_paths}
    COMMENT "Packing the resource archive ${name}"
    VERBATIM)
  # A packing target of its own: TARGET may be of any kind, and the archive
  # need not be listed among its sources.
  string(MAKE_C_IDENTIFIER "${target}_${name}" packer)
  add_custom_target("${packer}" DEPENDS "${archive}")
  add_dependencies("${target}" "${packer}")
endfunction()
