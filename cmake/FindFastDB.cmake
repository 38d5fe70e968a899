# FastDB::FastDB, an installed FastDB or its source folder with the built library; looked for under FastDB_ROOT.
find_path(FastDB_INCLUDE_DIR fastdb.h PATH_SUFFIXES include/fastdb fastdb include inc)
# FastDB's own makefile calls the library for threaded programs libfastdb_r, its configure script libfastdb.
find_library(FastDB_LIBRARY NAMES fastdb_r fastdb PATH_SUFFIXES lib lib64 .libs)
mark_as_advanced(FastDB_INCLUDE_DIR FastDB_LIBRARY)

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(FastDB REQUIRED_VARS FastDB_LIBRARY FastDB_INCLUDE_DIR
                                  REASON_FAILURE_MESSAGE "-DFastDB_ROOT=DIR names the folder it is installed in.")

if(FastDB_FOUND AND NOT TARGET FastDB::FastDB)
  find_package(Threads REQUIRED)
  add_library(FastDB::FastDB UNKNOWN IMPORTED)
  # Headers of imported targets are system headers: their warnings are not ours. What is built with them defines
  # DTSDB_RTDB_FASTDB, which rtdb/backend.h goes by.
  set_target_properties(FastDB::FastDB PROPERTIES IMPORTED_LOCATION ${FastDB_LIBRARY}
                                                  INTERFACE_INCLUDE_DIRECTORIES ${FastDB_INCLUDE_DIR}
                                                  INTERFACE_COMPILE_DEFINITIONS DTSDB_RTDB_FASTDB
                                                  INTERFACE_LINK_LIBRARIES Threads::Threads)
endif()
