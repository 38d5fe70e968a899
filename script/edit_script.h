/// \file
/// Edit scripts: records to add to a model and to remove from it, one on a line (docs/command.md).
#pragma once

#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "validation/editing.h"

namespace dtsdb::tools {

template <class... Record>
std::variant<Record...> OneOf(TypeList<Record...>);

/// A record of any class that can be edited.
using EditedRecord = decltype(OneOf(EditedRecords()));

/// One line of a script.
struct Edit {
  int line = 0;  ///< its number, from 1
  bool isRemoval = false;
  EditedRecord record;  ///< the record to add, its links -1; of one to remove the identity alone
};

/// Reads a script, `file` being its name in messages. Throws Failure with the line of the first thing that is wrong.
std::vector<Edit> ReadEditScript(const std::string& file, std::string_view bytes);

}  // namespace dtsdb::tools
