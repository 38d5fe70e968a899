/// \file
/// One text table: a CSV file's bytes from and to the records of a table.
#pragma once

#include <string>
#include <string_view>

#include "model/any_table.h"

namespace dtsdb::tools {

/// The identity that UTF-8 `bytes` stand for, into `id`. Gives an empty text, or what is wrong.
std::string ParseIdentity(const std::string& bytes, QString& id);

/// Reads the text table `bytes`, from the file called `file` in messages, into `table`. Throws Failure, with file, row
/// and column, at the first thing that is wrong.
void ReadTextTable(const std::string& file, std::string_view bytes, const AnyTable& table);

/// The text table with the records of `table`, all fields in their order, in the order of the keys. Throws Failure when
/// a text can't hold a record.
std::string TextTable(const AnyTable& table);

}  // namespace dtsdb::tools
