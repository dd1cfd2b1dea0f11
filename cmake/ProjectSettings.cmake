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

# Every sanitizer report must fail the run: undefined behaviour aborts like a
# memory error instead of printing and going on.
if(ORVIX1_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined -fno-sanitize-recover=all)
endif()
# Boost.Asio's thread fences draw GCC's "not supported with TSan" warning;
# it is about their code and must not stop the build.
if(ORVIX1_SANITIZE_THREAD)
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -Wno-tsan)
  add_link_options(-fsanitize=thread)
endif()
# Fuzzing needs clang's libFuzzer; the library is instrumented for coverage and
# checked by ASan and UBSan, the fuzz targets add libFuzzer's main.
if(ORVIX1_BUILD_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "ORVIX1_BUILD_FUZZ needs clang (configure with CMAKE_CXX_COMPILER=clang++)")
  endif()
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()

include(orvix1WxTarget)
