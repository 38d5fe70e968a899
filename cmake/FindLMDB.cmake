# Finds LMDB's header and library; gives the target LMDB::LMDB.
find_path(LMDB_INCLUDE_DIR lmdb.h)
find_library(LMDB_LIBRARY lmdb)

if(LMDB_INCLUDE_DIR)
  file(STRINGS ${LMDB_INCLUDE_DIR}/lmdb.h lmdb_numbers REGEX "^#define MDB_VERSION_(MAJOR|MINOR|PATCH)[ \t]+[0-9]+")
  string(REGEX REPLACE "[^0-9;]" "" lmdb_numbers "${lmdb_numbers}")
  list(JOIN lmdb_numbers "." LMDB_VERSION)
endif()

include(FindPackageHandleStandardArgs)
find_package_handle_standard_args(LMDB REQUIRED_VARS LMDB_LIBRARY LMDB_INCLUDE_DIR VERSION_VAR LMDB_VERSION)

if(LMDB_FOUND AND NOT TARGET LMDB::LMDB)
  add_library(LMDB::LMDB UNKNOWN IMPORTED)
  set_target_properties(LMDB::LMDB PROPERTIES IMPORTED_LOCATION ${LMDB_LIBRARY}
                                              INTERFACE_INCLUDE_DIRECTORIES ${LMDB_INCLUDE_DIR})
endif()
mark_as_advanced(LMDB_INCLUDE_DIR LMDB_LIBRARY)
