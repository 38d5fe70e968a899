include(${CMAKE_CURRENT_LIST_DIR}/Install.cmake)

# The library itself, shared and static, from one compilation of its components.
get_property(components GLOBAL PROPERTY DTSDB_COMPONENTS)
list(TRANSFORM components REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)

foreach(kind SHARED STATIC)
  set(target dtsdb)
  if(kind STREQUAL STATIC)
    set(target dtsdb_static)
  endif()
  add_library(${target} ${kind} ${objects})
  add_library(dtsdb::${target} ALIAS ${target})
  target_link_libraries(${target} PUBLIC Qt6::Core ${realtime_database}::${realtime_database} Threads::Threads)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/dtsdb>)
  target_compile_features(${target} PUBLIC cxx_std_20)
  set_target_properties(${target} PROPERTIES OUTPUT_NAME dtsdb LINKER_LANGUAGE CXX)
  if(DTSDB_SANITIZE)
    target_link_options(${target} PUBLIC -fsanitize=address,undefined)
  endif()
endforeach()
target_sources(dtsdb PRIVATE breakerflow/internal/log_at_load.cpp)
target_link_libraries(dtsdb PRIVATE $<BUILD_INTERFACE:dtsdb_options>)
set_target_properties(dtsdb PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${DTSDB_ABI})
dtsdb_show_listed_symbols(dtsdb)

# Installation, in components: `runtime`, what programs need that run; `development`, what programs need that are built;
# `tools`, the command. The public headers lie under include/dtsdb/ by the paths they have here.
include(CMakePackageConfigHelpers)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/dtsdb)
dtsdb_install_libraries(dtsdbTargets dtsdb dtsdb_static)
foreach(header ${public_headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dtsdb/${folder}
          COMPONENT development)
endforeach()
configure_package_config_file(cmake/dtsdbConfig.cmake.in ${PROJECT_BINARY_DIR}/dtsdbConfig.cmake
                              INSTALL_DESTINATION ${package_folder})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/dtsdbConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/dtsdbConfig.cmake ${PROJECT_BINARY_DIR}/dtsdbConfigVersion.cmake
              ${PROJECT_SOURCE_DIR}/cmake/Find${realtime_database}.cmake
        DESTINATION ${package_folder} COMPONENT development)
dtsdb_install_pkgconfig(dtsdb)
