#include <map>

#include "command/commands.h"
#include "command/completion_script.h"
#include "formats/failure.h"

namespace dtsdb::tools {
namespace {

struct CompletionOptions {
  std::string shell;
};

constexpr const char* kCompletionFooter =
    "Debian's package installs the scripts. Without it:\n"
    "  bash  source <(dtsdb completion bash)\n"
    "  zsh   dtsdb completion zsh > _dtsdb, in a folder of fpath\n"
    "  fish  dtsdb completion fish > ~/.config/fish/completions/dtsdb.fish\n\n"
    "Examples:\n"
    "  source <(dtsdb completion bash)";

int Complete(const CompletionOptions& options) {
  static const std::map<std::string, std::string (*)(const CommandOutline&)> scripts = {
      {"bash", BashCompletion}, {"zsh", ZshCompletion}, {"fish", FishCompletion}};
  WriteUtf8(scripts.at(options.shell)(OutlineOfProgram()));
  return kExitGood;
}

}  // namespace

void AddCompletion(CommandLine& app, Action& action) {
  AddCommand<CompletionOptions>(
      app, action, "completion", "Print a script by which a shell completes the command line",
      [](CommandLine& command, CompletionOptions& options) {
        const auto choose = [&options](const std::string& shell) { options.shell = shell; };
        command.AddChoice("SHELL", choose, {"bash", "zsh", "fish"}, "The shell").Required();
        command.Footer(kCompletionFooter);
        AddExitCodes(command, "the script is printed");
      },
      Complete);
}

}  // namespace dtsdb::tools
