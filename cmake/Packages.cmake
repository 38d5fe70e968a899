# The Debian packages, one for each component of the installation: scripts/package builds
# them by `cpack` and checks what comes out.
set(package_maintainer "The developers of dtsdb <maintainers@dtsdb.invalid>")
set(package_version ${PROJECT_VERSION}-1)
execute_process(COMMAND date --utc --rfc-email --date=${DTSDB_RELEASE_DATE}
                OUTPUT_VARIABLE package_date OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)

# dtsdb_package(COMPONENT NAME SECTION DEPENDS SUMMARY TEXT): what Debian knows of a component's package, and what each
# package has to document.
macro(dtsdb_package component name section depends summary text)
  string(TOUPPER ${component} COMPONENT)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${COMPONENT}_PACKAGE_DEPENDS "${depends}")
  set(CPACK_DEBIAN_${COMPONENT}_DESCRIPTION "${summary}\n${text}")
  foreach(file IN ITEMS ${PROJECT_SOURCE_DIR}/packaging/copyright ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz
                        ${PROJECT_BINARY_DIR}/packaging/changelog.gz)
    install(FILES ${file} DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${name} COMPONENT ${component} EXCLUDE_FROM_ALL)
  endforeach()
endmacro()

function(dtsdb_packed from to)
  execute_process(COMMAND gzip --best --no-name --stdout ${from} OUTPUT_FILE ${to} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
configure_file(packaging/changelog.in packaging/changelog @ONLY)
dtsdb_packed(${PROJECT_BINARY_DIR}/packaging/changelog ${PROJECT_BINARY_DIR}/packaging/changelog.Debian.gz)
dtsdb_packed(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${PROJECT_BINARY_DIR}/packaging/changelog.gz)

set(about "dtsdb keeps a utility's electrical network in memory as tables, validates
it, works out its topology from the positions of its breakers, computes the
power through every closed breaker, and shares a realtime database.
.
")
set(this_abi libdtsdb${DTSDB_ABI})
dtsdb_package(runtime ${this_abi} libs "" "network analysis of a control centre - shared libraries"
              "${about}This package contains what programs need that run.")
string(CONCAT built_with "${this_abi} (= ${package_version}), qt6-base-dev, liblmdb-dev, libexpected-dev, libfmt-dev, "
                         "libarchive-dev, libcsv-dev, libgraphviz-dev")
dtsdb_package(development libdtsdb-dev libdevel "${built_with}" "network analysis of a control centre - development"
              "${about}This package contains what programs need that are built: headers, static
libraries, and how CMake and pkg-config find them.")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/triggers)
if(TARGET dtsdb_command)
  dtsdb_package(tools dtsdb science "" "network analysis of a control centre - command"
                "${about}This package contains the command dtsdb, its manual pages and completion,
and the unit by which systemd runs the topology task of a database.")
  set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "systemd, procps")
  set(CPACK_DEBIAN_TOOLS_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/packaging/postinst)
  set(CPACK_DEBIAN_TOOLS_PACKAGE_CONTROL_STRICT_PERMISSION ON)
endif()
if(TARGET dtsdb_python)
  # The module is for one minor version of Python.
  math(EXPR next_minor "${Python_VERSION_MINOR} + 1")
  set(python "python3 (>= ${Python_VERSION_MAJOR}.${Python_VERSION_MINOR}), python3 (<< ${Python_VERSION_MAJOR}.${next_minor})")
  dtsdb_package(python python3-dtsdb python "${python}, python3-numpy"
                "network analysis of a control centre - package for Python"
                "${about}This package contains the module dtsdb for Python 3.")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS "python3-pandas, python3-distributed")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME dtsdb)
set(CPACK_PACKAGE_CONTACT "${package_maintainer}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/PackedFiles.cmake)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
include(CPack)
