# Compiler settings shared by every target of the project.

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
  # ccache can only cache translation units that use a precompiled header
  # when the preprocessed output names the header.
  add_compile_options(-fpch-preprocess)
endif()

# Our own code builds warning-free; third-party headers come in as system headers.
function(orvix1_strict_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Werror)
endfunction()

# Shared libraries export only what is marked with their API macro.
function(orvix1_hidden_visibility target)
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
endfunction()

if(ORVIX1_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

# wxWidgets as an imported target, so that its include paths are system paths
# (its headers are not -Wextra clean) and its flags travel with the target.
macro(orvix1_make_wx_target)
  if(NOT TARGET orvix1_wx)
    add_library(orvix1_wx INTERFACE IMPORTED)
    target_include_directories(orvix1_wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
    target_compile_definitions(orvix1_wx INTERFACE ${wxWidgets_DEFINITIONS})
    target_compile_options(orvix1_wx INTERFACE ${wxWidgets_CXX_FLAGS})
    target_link_libraries(orvix1_wx INTERFACE ${wxWidgets_LIBRARIES})
  endif()
endmacro()
