# wxWidgets as an imported target `orvix1_wx`, built from the variables that
# FindwxWidgets sets: its include paths become system paths (the wx headers
# are not -Wextra clean) and its flags travel with the target. Used by the
# build and by the installed package alike.
macro(orvix1_make_wx_target)
  if(NOT TARGET orvix1_wx)
    add_library(orvix1_wx INTERFACE IMPORTED)
    target_include_directories(orvix1_wx SYSTEM INTERFACE ${wxWidgets_INCLUDE_DIRS})
    target_compile_definitions(orvix1_wx INTERFACE ${wxWidgets_DEFINITIONS})
    target_compile_options(orvix1_wx INTERFACE ${wxWidgets_CXX_FLAGS})
    target_link_libraries(orvix1_wx INTERFACE ${wxWidgets_LIBRARIES})
  endif()
endmacro()
