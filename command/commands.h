/// \file
/// The command `dtsdb` and its subcommands, one source file each, called like the subcommand.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "command/render.h"
#include "formats/model_name.h"
#include "validation/message_catalog.h"

namespace dtsdb::tools {

/// What a subcommand does once the command line has been read. Returns the exit code; may throw Failure.
using Action = std::function<int()>;

// Each adds its subcommand to `app`; when the command line names it, `action` is set.
void AddValidate(CLI::App& app, Action& action);
void AddTopology(CLI::App& app, Action& action);
void AddSwitch(CLI::App& app, Action& action);
void AddRun(CLI::App& app, Action& action);
void AddFlow(CLI::App& app, Action& action);
void AddConvert(CLI::App& app, Action& action);
void AddEdit(CLI::App& app, Action& action);
void AddGenerate(CLI::App& app, Action& action);
void AddInfo(CLI::App& app, Action& action);
void AddDump(CLI::App& app, Action& action);
void AddDiff(CLI::App& app, Action& action);
void AddRtdb(CLI::App& app, Action& action);

/// Adds subcommand `name` with its `Options`, which live as long as the action does: `describe` adds what it takes,
/// `run` is the action.
template <class Options>
void AddCommand(CLI::App& app, Action& action, const std::string& name, const std::string& purpose,
                const std::function<void(CLI::App&, Options&)>& describe, int (*run)(const Options&)) {
  const auto options = std::make_shared<Options>();
  CLI::App* const command = app.add_subcommand(name, purpose);
  describe(*command, *options);
  command->callback([options, run, &action] { action = [options, run] { return run(*options); }; });
}

// What several subcommands take.
CLI::Option* AddArgument(CLI::App& command, const std::string& name, std::string& value, const std::string& what);
/// A MODEL, read into `model`.
CLI::Option* AddModelArgument(CLI::App& command, ModelName& model, const std::string& name = "MODEL",
                              const std::string& what = "Object file, folder of text tables or rtdb:NAME");
/// An option that takes one of `choices` and hands it to `choose`.
void AddChoice(CLI::App& command, const std::string& name, const std::function<void(const std::string&)>& choose,
               const std::vector<std::string>& choices, const std::string& what);
/// The argument NAME, a realtime database.
void AddDatabaseArgument(CLI::App& command, ModelName& database);
void AddIdOption(CLI::App& command, std::string& id, const std::string& what);
void AddFormatOption(CLI::App& command, Format& format);
/// The option --lang, the language of findings.
void AddLanguageOption(CLI::App& command, Language& language);
void AddSheetOption(CLI::App& command, std::string& sheet, const std::string& sheets);
/// The option --log FILE: what the library logs while the command runs, the log of `what`. RunCommand sees to it.
void AddLogOption(CLI::App& command, const std::string& what);
/// Ends the help of `command` with its exit codes: what 0 and, for a command that has it, 1 mean.
void AddExitCodes(CLI::App& command, const std::string& good, const std::string& faults = "");
/// The option -o OUT, a model to be written.
CLI::Option* AddOutputOption(CLI::App& command, ModelName& output, const std::string& what);
/// The argument OUT of a command that always writes.
CLI::Option* AddOutputArgument(CLI::App& command, ModelName& output, const std::string& what);

/// Reads the command line, runs the subcommand and returns the exit code. Whatever goes wrong ends in one line on the
/// standard error.
int RunCommand(int argc, const char* const* argv);

}  // namespace dtsdb::tools
