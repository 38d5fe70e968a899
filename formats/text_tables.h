/// \file
/// Models as folders of text tables: one CSV file for each table that has records (docs/text-tables.md).
#pragma once

#include <map>
#include <string>

#include "formats/reading_progress.h"
#include "model/dtsdb.h"

namespace dtsdb::tools {

/// Looks for the folder of text tables `folder` where there is none: a program that was killed while replacing it may
/// have left the old one aside. True when it is there now.
bool FindTextTables(const std::string& folder);

/// Reads the text tables in `folder` into `database`, whose tables must be empty. Every record becomes one of its
/// table; slots are numbered in the order of the keys. Throws Failure, with file, row and column, at the first thing
/// that is wrong; the database is then half filled and good for nothing. `progress` is called after each table.
void ReadTextTables(const std::string& folder, DTSDB& database, const ReadingProgress& progress = {});

/// A folder of text tables as bytes, for the salvage of what is in it.
struct TextTableBytes {
  std::map<std::string, std::string> tables;  ///< by the name of the table
  std::map<std::string, std::string> faults;  ///< what is wrong, by table or, where there is none, by file
};

/// Reads the files of `folder`. Throws Failure where it can't be looked into or holds no text tables.
TextTableBytes ReadTextTableBytes(const std::string& folder);

/// Writes the records of `database` as text tables to `folder`, made anew or put in place of a folder that holds
/// nothing but text tables. Throws Failure, and leaves everything as it was, when that can't be done.
void WriteTextTables(DTSDB& database, const std::string& folder);

}  // namespace dtsdb::tools
