/// \file
/// Edit scripts: records to add to a model, to change and to remove, one on a line (docs/command.md).
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

enum class EditKind { kAdd, kChange, kRemove };

/// The word for a kind, with which a line begins.
const char* EditWord(EditKind kind);

/// One line of a script.
struct Edit {
  int line = 0;  ///< its number, from 1
  EditKind kind = EditKind::kAdd;
  EditedRecord
      record;  ///< to add: its links are -1; to change: the identity and the new values; to remove: the identity
  std::vector<const FieldInfo*> changed{};  ///< the fields that a change is given values for
};

/// The edit that the words of a line stand for. Throws Failure when they stand for none.
Edit ParseEdit(const std::vector<std::string>& words);

/// Reads a script, `file` being its name in messages. Throws Failure with the line of the first thing that is wrong.
std::vector<Edit> ReadEditScript(const std::string& file, std::string_view bytes);

}  // namespace dtsdb::tools
