/// \file
/// The command `dtsdb` and its subcommands, one source file each, called like the subcommand.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "command/command_line.h"
#include "command/render.h"
#include "formats/model_name.h"
#include "validation/message_catalog.h"

namespace dtsdb::tools {

/// What a subcommand does once the command line has been read. Returns the exit code; may throw Failure.
using Action = std::function<int()>;

// Each adds its subcommand to `app`; when the command line names it, `action` is set.
void AddValidate(CommandLine& app, Action& action);
void AddTopology(CommandLine& app, Action& action);
void AddSwitch(CommandLine& app, Action& action);
void AddScreen(CommandLine& app, Action& action);
void AddDraw(CommandLine& app, Action& action);
void AddReport(CommandLine& app, Action& action);
void AddRun(CommandLine& app, Action& action);
void AddServe(CommandLine& app, Action& action);
void AddFlow(CommandLine& app, Action& action);
void AddCheck(CommandLine& app, Action& action);
void AddConvert(CommandLine& app, Action& action);
void AddEdit(CommandLine& app, Action& action);
void AddGenerate(CommandLine& app, Action& action);
void AddInfo(CommandLine& app, Action& action);
void AddDump(CommandLine& app, Action& action);
void AddDiff(CommandLine& app, Action& action);
void AddRtdb(CommandLine& app, Action& action);
void AddRelay(CommandLine& app, Action& action);
void AddCompletion(CommandLine& app, Action& action);

/// Adds subcommand `name` with its `Options`, which live as long as the action does: `describe` adds what it takes,
/// `run` is the action.
template <class Options>
void AddCommand(CommandLine& app, Action& action, const std::string& name, const std::string& purpose,
                const std::function<void(CommandLine&, Options&)>& describe, int (*run)(const Options&)) {
  const auto options = std::make_shared<Options>();
  CommandLine command =
      app.AddSubcommand(name, purpose, [options, run, &action] { action = [options, run] { return run(*options); }; });
  describe(command, *options);
}

// What several subcommands take.
Parameter AddArgument(CommandLine& command, const std::string& name, std::string& value, const std::string& what);
/// A MODEL, read into `model`.
Parameter AddModelArgument(
    CommandLine& command, ModelName& model, const std::string& name = "MODEL",
    const std::string& what = "Object file, text tables, CGMES profiles, XIIDM file or rtdb:NAME");
/// The argument NAME, a realtime database.
void AddDatabaseArgument(CommandLine& command, ModelName& database);
void AddIdOption(CommandLine& command, std::string& id, const std::string& what);
void AddFormatOption(CommandLine& command, Format& format);
/// The option --lang, the language of findings.
void AddLanguageOption(CommandLine& command, Language& language);
void AddSheetOption(CommandLine& command, std::string& sheet, const std::string& sheets);
/// The option --log FILE: what the library logs while the command runs, the log of `what`. RunCommand sees to it.
void AddLogOption(CommandLine& command, const std::string& what);
/// Ends the help of `command` with its exit codes: what 0 and, for a command that has it, 1 mean.
void AddExitCodes(CommandLine& command, const std::string& good, const std::string& faults = "");
/// An option that takes the path of a FILE to be written.
void AddPathOption(CommandLine& command, const std::string& name, std::string& path, const std::string& what);
/// The option -o OUT, a model to be written.
Parameter AddOutputOption(CommandLine& command, ModelName& output, const std::string& what);
/// Another option that names a model to be written.
Parameter AddModelOption(CommandLine& command, const std::string& name, ModelName& output, const std::string& what);
/// The argument OUT.
Parameter AddOutputArgument(CommandLine& command, ModelName& output, const std::string& what);

/// What the program takes.
CommandOutline OutlineOfProgram();

/// Reads the command line, runs the subcommand and returns the exit code. Whatever goes wrong ends in one line on the
/// standard error.
int RunCommand(int argc, const char* const* argv);

/// Reports that there is not enough memory, and takes none for it.
void ReportNoMemory();

}  // namespace dtsdb::tools
