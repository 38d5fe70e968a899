/// \file
/// One text table: a CSV file's bytes from and to the records of a table.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "model/any_table.h"

namespace dtsdb::tools {

/// The identity that UTF-8 `bytes` stand for, into `id`. Gives an empty text, or what is wrong.
std::string ParseIdentity(const std::string& bytes, QString& id);

/// Reads the text table `bytes`, from the file called `file` in messages, into `table`. Throws Failure, with file, row
/// and column, at the first thing that is wrong.
void ReadTextTable(const std::string& file, std::string_view bytes, const AnyTable& table);

/// What is wrong in a text table.
struct TextFault {
  int line = 0;        ///< of the row; 0: in the file as a whole
  std::string column;  ///< empty: in the row as a whole
  std::string what;
  std::string id = {};  ///< key of the record that is left out (UTF-8), as far as it can be read
};
using OnTextFault = std::function<void(const TextFault&)>;

/// Reads what can be read of a damaged text table: rows that are wrong are left out, and `fault` gets why. Returns how
/// many are, or nothing where that can't be known.
std::optional<long long> SalvageTextTable(std::string_view bytes, const AnyTable& table, const OnTextFault& fault);

/// The text table with the records of `table`, all fields in their order, in the order of the keys. Throws Failure when
/// a text can't hold a record.
std::string TextTable(const AnyTable& table);

}  // namespace dtsdb::tools
