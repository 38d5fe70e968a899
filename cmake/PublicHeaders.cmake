# The headers that users' programs get, by their paths here and under include/dtsdb/. All others lie in internal/ folders.
# cmake/Library.cmake installs these, tests/package compiles each alone and compares the list with what is installed;
# docs/architecture.md describes them. `realtime_database` is LMDB or FastDB.
set(public_headers
    # The containers, and what their definitions need.
    include/array.h
    include/chain.h
    include/check.h
    include/child_list.h
    include/hoare_order.h
    include/log_sink.h
    include/matrix.h
    include/slot_order.h
    include/table.h
    include/table_bulk_impl.h
    include/table_impl.h
    include/template.h
    include/type_list.h
    include/write_whole.h
    # The realtime database and its rows.
    rtdb/backend.h
    rtdb/column_info.h
    rtdb/file_name.h
    rtdb/volma_rtdb.h
    # The model.
    model/any_table.h
    model/archive_bytes.h
    model/basic_types.h
    model/branch_kinds.h
    model/dtsdb.h
    model/exchange.h
    model/field_info.h
    model/field_runs.h
    model/objectfile.h
    model/qarchive.h
    model/record_bits.h
    model/records.h
    model/relations.h
    model/table_image.h
    model/table_info.h
    model/table_kinds.h
    model/table_pointers.inc
    model/tables.h
    model/text.h
    model/threads.h
    model/twins.h
    model/whole_file.h
    # What works on it.
    validation/editing.h
    validation/finding.h
    validation/message_catalog.h
    validation/nmd.h
    topology/component_types.h
    topology/switch_event.h
    topology/tp.h
    breakerflow/cbflow.h
    breakerflow/flows.h)

# The store's own interface, or the one of the FastDB that is installed in its place.
if(realtime_database STREQUAL "LMDB")
  list(APPEND public_headers rtdb/cursor.h rtdb/database.h rtdb/descriptors.h rtdb/error_class.h rtdb/fastdb.h rtdb/query.h
                             rtdb/reference.h)
else()
  list(APPEND public_headers rtdb/installed_fastdb.h)
endif()

# The records of the model and the rows that stand for them, a file for each group in both folders.
set(record_groups branch_ends branches devices hierarchy measurements relations_of_levels relations_of_nodes
                  relations_of_owners results)
foreach(group ${record_groups})
  list(APPEND public_headers model/records/${group}.h rtdb/rows/${group}.h)
endforeach()

# The layer above the core.
if(DTSDB_BUILD_ANALYSIS)
  list(APPEND public_headers analysis/careful_runner.h analysis/effect.h analysis/error.h analysis/flows.h analysis/model.h
                             analysis/screening.h analysis/switching.h analysis/topology.h formats/import_options.h
                             formats/reading_progress.h formats/station_positions.h)
endif()

# Diagrams and maps.
if(DTSDB_BUILD_PICTURES)
  list(APPEND public_headers pictures/grid.h pictures/grid_map.h pictures/picture.h pictures/station.h
                             pictures/station_diagram.h pictures/svg.h)
endif()
