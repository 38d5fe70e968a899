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
set_target_properties(dtsdb PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})

# Installation: the public headers under include/dtsdb/ by the paths they have here, and the CMake package dtsdb.
include(CMakePackageConfigHelpers)
install(TARGETS dtsdb dtsdb_static EXPORT dtsdbTargets)
foreach(header ${public_headers})
  cmake_path(GET header PARENT_PATH folder)
  install(FILES ${PROJECT_SOURCE_DIR}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/dtsdb/${folder})
endforeach()
install(EXPORT dtsdbTargets NAMESPACE dtsdb:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/dtsdb)
configure_package_config_file(cmake/dtsdbConfig.cmake.in ${PROJECT_BINARY_DIR}/dtsdbConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/dtsdb)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/dtsdbConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/dtsdbConfig.cmake ${PROJECT_BINARY_DIR}/dtsdbConfigVersion.cmake
              ${PROJECT_SOURCE_DIR}/cmake/Find${realtime_database}.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/dtsdb)
