# Whose realtime database the system is built with: the project's own on LMDB, or an installed FastDB, looked for under
# FastDB_ROOT. Everything else is the same source for both. The names that begin with pkgconfig_ are for dtsdb.pc.
set(DTSDB_RTDB lmdb CACHE STRING "Realtime database: lmdb, the project's own, or fastdb, installed under FastDB_ROOT")
set_property(CACHE DTSDB_RTDB PROPERTY STRINGS lmdb fastdb)

list(APPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR})
find_package(Threads REQUIRED)
if(DTSDB_RTDB STREQUAL "lmdb")
  set(realtime_database LMDB)
  find_package(LMDB 0.9 REQUIRED)
  set(pkgconfig_private lmdb)
elseif(DTSDB_RTDB STREQUAL "fastdb")
  set(realtime_database FastDB)
  find_package(FastDB REQUIRED)
  set(pkgconfig_definitions " -DDTSDB_RTDB_FASTDB -I${FastDB_INCLUDE_DIR}")
  set(pkgconfig_libraries "${FastDB_LIBRARY} ")
else()
  message(FATAL_ERROR "DTSDB_RTDB is \"${DTSDB_RTDB}\"; it must be lmdb or fastdb")
endif()
