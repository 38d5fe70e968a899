/// \file
/// Applying an edit script to a model.
#pragma once

#include <vector>

#include "command/render.h"
#include "model/dtsdb.h"
#include "script/edit_script.h"
#include "validation/message_catalog.h"

namespace dtsdb::tools {

/// What a script made of a model.
struct ScriptResult {
  int applied = 0;  ///< number of lines
  Sheet refusals;   ///< the lines that couldn't be applied
  Sheet records;    ///< the tables whose number of records has changed
  Sheet faults;     ///< the errors that the validation at the end found; none where lines were refused
  bool good = false;
};

/// Applies `edits`, in their order, to a model that is good, and validates the result. A line that is refused is passed
/// over, so that all of them are reported; the model then isn't good, whatever its mark. Texts are in `language`.
/// Leaves no log.
ScriptResult ApplyScript(DTSDB& database, const std::vector<Edit>& edits, Language language);

}  // namespace dtsdb::tools
