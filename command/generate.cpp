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

void AddGenerate(CLI::App& app, Action& action) {
  AddCommand<GenerateOptions>(
      app, action, "generate", "Make a random valid utility",
      [](CLI::App& command, GenerateOptions& options) {
        CLI::Option* const place = AddOutputArgument(command, options.output, "The same without -o");
        place->required(false);
        AddOutputOption(command, options.output, "Where the model is written")->excludes(place);
        command.add_option("--stations", options.utility.stations, "Number of stations, 10 by default")
            ->check(CLI::Range(1, 1000000).description(""))
            ->option_text("N");
        command.add_option("--seed", options.utility.seed, "Choice among the utilities of that size, 1 by default")
            ->option_text("S");
        command.footer(kFooter);
        AddExitCodes(command, "the model is written");
      },
      Generate);
}

}  // namespace dtsdb::tools
