#include "command/commands.h"
#include "formats/failure.h"
#include "formats/model_io.h"
#include "generate/generator.h"

namespace dtsdb::tools {
namespace {

struct GenerateOptions {
  ModelName output;
  GeneratorOptions utility{10, 1};
};

constexpr const char* kFooter =
    "The same number of stations and the same seed give the same model, byte for byte.\n"
    "OUT is as with 'dtsdb convert', with or without -o in front of it.\n\n"
    "Examples:\n"
    "  dtsdb generate --stations 100 --seed 7 -o grid.obj\n"
    "  dtsdb generate --stations 3 -o small/";

int Generate(const GenerateOptions& options) {
  if (options.output.IsEmpty()) throw Failure(kExitUsage, "name the place of the model with -o OUT");
  DTSDB database;
  GenerateUtility(database, options.utility);
  SaveModel(database, options.output);
  return kExitGood;
}

}  // namespace

void AddGenerate(CommandLine& app, Action& action) {
  AddCommand<GenerateOptions>(
      app, action, "generate", "Make a random valid utility",
      [](CommandLine& command, GenerateOptions& options) {
        const Parameter place = AddOutputArgument(command, options.output, "The same without -o");
        AddOutputOption(command, options.output, "Where the model is written").Excludes(place);
        command.Add("--stations", options.utility.stations, "Number of stations, 10 by default")
            .Within(1, 1000000)
            .Shown("N");
        command.Add("--seed", options.utility.seed, "Choice among the utilities of that size, 1 by default").Shown("S");
        command.Footer(kFooter);
        AddExitCodes(command, "the model is written");
      },
      Generate);
}

}  // namespace dtsdb::tools
