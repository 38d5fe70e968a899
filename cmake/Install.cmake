# dtsdb_install_libraries(EXPORT TARGETS...): shared libraries for programs that run, all else for those that are built;
# the CMake package knows the targets by EXPORT.
function(dtsdb_install_libraries export)
  install(TARGETS ${ARGN} EXPORT ${export}
          LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
          ARCHIVE COMPONENT development)
  install(EXPORT ${export} NAMESPACE dtsdb:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/dtsdb COMPONENT development)
endfunction()

# dtsdb_install_pkgconfig(NAME): NAME.pc, from NAME.pc.in beside this file. It finds the prefix from where it lies.
function(dtsdb_install_pkgconfig name)
  set(folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH prefix_from_here /prefix/${folder} /prefix)
  string(REGEX REPLACE "/$" "" prefix_from_here ${prefix_from_here})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.pc.in ${PROJECT_BINARY_DIR}/${name}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/${name}.pc DESTINATION ${folder} COMPONENT development)
endfunction()

# dtsdb_show_listed_symbols(TARGET): of what the shared library TARGET contains, programs see what cmake/symbols/TARGET.txt
# lists (scripts/symbols writes it), with the version DTSDB_<ABI>. The lists hold for the built-in realtime database, on 64
# bits, by GCC; other builds show all.
function(dtsdb_show_listed_symbols target)
  if(DTSDB_SANITIZE OR NOT realtime_database STREQUAL LMDB OR NOT CMAKE_SIZEOF_VOID_P EQUAL 8
     OR NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    return()
  endif()
  set(list ${PROJECT_SOURCE_DIR}/cmake/symbols/${target}.txt)
  set(script ${PROJECT_BINARY_DIR}/${target}.map)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  file(STRINGS ${list} symbols)
  list(JOIN symbols ";\n  " symbols)
  file(CONFIGURE OUTPUT ${script} @ONLY CONTENT "DTSDB_@DTSDB_ABI@ {\n global:\n  @symbols@;\n local:\n  *;\n};\n")
  target_link_options(${target} PRIVATE -Wl,--version-script=${script})
  set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${script})
endfunction()

# dtsdb_layer(NAME EXPORT_NAME): what the shared library NAME and the static NAME_static of a layer above the core have in
# common: their names on disk and for other programs, the version, and what is seen of the shared one.
function(dtsdb_layer name export_name)
  set_target_properties(${name} PROPERTIES LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION} SOVERSION ${DTSDB_ABI})
  dtsdb_show_listed_symbols(${name})
  if(DTSDB_SANITIZE)
    target_link_options(${name} PUBLIC -fsanitize=address,undefined)
  endif()
  foreach(suffix "" _static)
    add_library(dtsdb::${export_name}${suffix} ALIAS ${name}${suffix})
    set_target_properties(${name}${suffix} PROPERTIES OUTPUT_NAME ${name} EXPORT_NAME ${export_name}${suffix})
  endforeach()
endfunction()
