#include <optional>

#include "analysis/flows.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/imported_model.h"
#include "command/place_filter.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "model/text.h"
#include "pictures/station_diagram.h"
#include "pictures/svg.h"

namespace dtsdb::tools {
namespace {

struct DrawOptions {
  ModelName model;
  Place place;
  std::string output;
  bool flows = false;
};

constexpr const char* kDrawFooter =
    "The picture is an SVG document, complete in itself. Without -o it goes to the standard output.\n"
    "A model without a topology gets one first. Each bus section has its colour, what is dead is grey and dashed, "
    "what\n"
    "is isolated is hatched. Every element carries an id, its classes and a title.\n\n"
    "Examples:\n"
    "  dtsdb draw examples/ieee14 --station Hekou -o hekou.svg\n"
    "  dtsdb draw grid.obj --kv ST7-220 --flows -o st7.svg";

QString IdOf(const std::string& text) { return IdFromText(QString::fromStdString(UserText(text))).value_or(QString()); }

/// The station or level that the user has named; with the flows through its breakers where they are asked for.
pictures::Station StationOf(const DrawOptions& options) {
  analysis::Model model = OpenModel(options.model);
  const PlaceFilter named(options.place, model.Tables());  // refuses names that the model doesn't have
  if (!analysis::HasTopology(model)) Take(analysis::WorkOutTopology(model));
  std::optional<Flows> flows;
  if (options.flows) flows = Take(analysis::WorkOutFlows(model));
  const pictures::StationReader reader(model.Tables(), flows ? &*flows : nullptr);
  const bool isLevel = !options.place.level.empty();
  return Take(isLevel ? reader.ReadLevel(IdOf(options.place.level)) : reader.Read(IdOf(options.place.station)));
}

int Draw(const DrawOptions& options) {
  if (options.place.IsEmpty()) throw Failure(kExitUsage, "name what to draw with --station ID or --kv ID");
  const std::string svg = pictures::ToSvg(pictures::DrawStation(StationOf(options), {options.flows}));
  if (options.output.empty()) {
    WriteUtf8(svg);
  } else {
    WriteFile(options.output, svg);
  }
  return kExitGood;
}

}  // namespace

void AddDraw(CommandLine& app, Action& action) {
  AddCommand<DrawOptions>(
      app, action, "draw", "Draw a station as an SVG picture",
      [](CommandLine& command, DrawOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddPlaceOptions(command, options.place);
        command.AddFlag("--flows", options.flows, "Show the powers at feeders and through breakers, with arrows");
        AddPathOption(command, "-o,--output", options.output, "Where the picture is written");
        AddLogOption(command, "the validation and the breaker flow where the model needs them");
        command.Footer(kDrawFooter);
        AddExitCodes(command, "the picture is drawn", "the model has errors or no topology");
      },
      Draw);
}

}  // namespace dtsdb::tools
