/// \file
/// The file of a realtime database, and what identifies it.
#pragma once

#include <string>

namespace dtsdb::rtdb {

/// The file of the database called `name`, with or without its ending: NAME.fdb, or NAME where only that exists.
std::string FileOf(const std::string& name);

/// What to call the database in `file` at dbDatabase::open: its absolute path without ".fdb". The built-in store goes
/// by the file alone. FastDB goes by this name: with it, two databases in different folders are two, and a database
/// that is reached in different ways is one.
std::string IdentityOf(const std::string& file);

}  // namespace dtsdb::rtdb
