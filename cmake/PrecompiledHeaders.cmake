# dtsdb_precompiled(NAME LIBRARIES ... HEADERS ...): headers from outside the project that many files include, compiled
# once. A target uses them by `target_precompile_headers(TARGET REUSE_FROM NAME)`. No header of the project is among
# them, and a build with CMAKE_DISABLE_PRECOMPILE_HEADERS is the same: each file includes what it uses.
function(dtsdb_precompiled name)
  cmake_parse_arguments(arg "" "" "LIBRARIES;HEADERS" ${ARGN})
  set(source ${CMAKE_CURRENT_FUNCTION_LIST_DIR}/precompiled.cpp)
  add_library(${name} OBJECT ${source})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} dtsdb_options)
  target_compile_definitions(${name} PRIVATE QT_NO_CAST_FROM_ASCII)
  target_compile_options(${name} PRIVATE -fpch-preprocess)
  target_precompile_headers(${name} PRIVATE ${arg_HEADERS})
endfunction()
