/// \file
/// Scripts of switching operations, and the same words on a command line (docs/command.md).
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "script/switch_events.h"

namespace dtsdb::tools {

/// The events that are followed up in one run.
using SwitchRun = std::vector<SwitchEvent>;

/// Takes the events in `words` into `runs`, which must not be empty: into the last run, and behind the word "run" into
/// another one. A Failure of usage when the words are no events.
void TakeSwitchRuns(const std::vector<std::string>& words, std::vector<SwitchRun>& runs);

/// The same for a script, on each line of which stand events or the word "run". `file` is its name in messages. Lines
/// are in UTF-8, or in GBK.
void TakeSwitchScript(const std::string& file, std::string_view bytes, std::vector<SwitchRun>& runs);

/// The events of one run as a script, one a line, in UTF-8. A Failure of usage when an identity can't stand in one.
std::string SwitchScriptText(const SwitchRun& events);

}  // namespace dtsdb::tools
