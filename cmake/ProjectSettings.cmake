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

include(orvix1WxTarget)
