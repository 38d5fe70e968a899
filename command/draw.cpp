#include <optional>

#include "analysis/flows.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/imported_model.h"
#include "command/place_filter.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "formats/import_ids.h"
#include "pictures/grid_map.h"
#include "pictures/station_diagram.h"
#include "pictures/svg.h"

namespace dtsdb::tools {
namespace {

struct DrawOptions {
  ModelName model;
  Place place;
  std::string output;
  bool flows = false;
  bool grid = false;
  std::string around;
  std::optional<int> hops;
};

constexpr int kUsualHops = 2;
constexpr int kMostHops = 1000;

constexpr const char* kDrawFooter =
    "The picture is an SVG document, complete in itself. Without -o it goes to the standard output.\n"
    "A model without a topology gets one first. Each bus section has its colour, what is dead is grey and dashed, "
    "what\n"
    "is isolated is hatched. Every element carries an id, its classes and a title.\n\n"
    "Examples:\n"
    "  dtsdb draw grid.obj --grid -o grid.svg\n"
    "  dtsdb draw grid.obj --grid --around ST7 --hops 3 --flows -o around.svg\n"
    "  dtsdb draw examples/ieee14 --station Hekou -o hekou.svg\n"
    "  dtsdb draw grid.obj --kv ST7-220 --flows -o st7.svg";

QString IdOf(const std::string& text) { return IdFromUtf8(UserText(text)).value_or(QString()); }

/// The picture of the station or level that the user has named; with the flows through its breakers where they are
/// asked for.
pictures::Picture DrawStation(const DrawOptions& options) {
  analysis::Model model = OpenModel(options.model);
  const PlaceFilter named(options.place, model.Tables());  // refuses names that the model doesn't have
  if (!analysis::HasTopology(model)) Take(analysis::WorkOutTopology(model));
  std::optional<Flows> flows;
  if (options.flows) flows = Take(analysis::WorkOutFlows(model));
  const pictures::StationReader reader(model.Tables(), flows ? &*flows : nullptr);
  const bool isLevel = !options.place.level.empty();
  const pictures::Station station =
      Take(isLevel ? reader.ReadLevel(IdOf(options.place.level)) : reader.Read(IdOf(options.place.station)));
  return pictures::DrawStation(station, {options.flows});
}

/// The map of the grid, or of the part around a station.
pictures::Picture DrawGrid(const DrawOptions& options) {
  analysis::Model model = OpenModel(options.model);
  if (!analysis::HasTopology(model)) Take(analysis::WorkOutTopology(model));
  const bool hasPositions = !model.Positions().empty();
  const pictures::GridReader reader(model.Tables(), hasPositions ? model.Positions() : PositionsBeside(options.model));
  if (options.around.empty()) return pictures::DrawGrid(reader.Read(), {options.flows});
  const pictures::Grid part = Take(reader.ReadAround(IdOf(options.around), options.hops.value_or(kUsualHops)));
  return pictures::DrawGrid(part, {options.flows});
}

void CheckOptions(const DrawOptions& options) {
  if (options.grid == !options.place.IsEmpty()) {
    throw Failure(kExitUsage, "name what to draw with --station ID, --kv ID or --grid");
  }
  if (!options.grid && !options.around.empty()) throw Failure(kExitUsage, "--around needs --grid");
  if (options.around.empty() && options.hops) throw Failure(kExitUsage, "--hops needs --around ID");
}

int Draw(const DrawOptions& options) {
  CheckOptions(options);
  const std::string svg = pictures::ToSvg(options.grid ? DrawGrid(options) : DrawStation(options));
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
      app, action, "draw", "Draw a station or the grid as an SVG picture",
      [](CommandLine& command, DrawOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddPlaceOptions(command, options.place);
        command.AddFlag("--grid", options.grid, "Draw the map of the grid: its stations and the lines between them");
        command.Add("--around", options.around, "Only this station and its neighbourhood on the map").Shown("ID");
        command.Add("--hops", options.hops, "How many lines the neighbourhood reaches (default: 2)")
            .Shown("N")
            .Within(0, kMostHops);
        command.AddFlag("--flows", options.flows,
                        "Show powers with arrows: at feeders and through breakers, or on lines");
        AddPathOption(command, "-o,--output", options.output, "Where the picture is written");
        AddLogOption(command, "the validation and the breaker flow where the model needs them");
        command.Footer(kDrawFooter);
        AddExitCodes(command, "the picture is drawn", "the model has errors or no topology");
      },
      Draw);
}

}  // namespace dtsdb::tools
