#include "analysis/topology.h"

#include <fmt/format.h>

#include <QDateTime>
#include <filesystem>
#include <system_error>

#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/place_filter.h"
#include "command/topology_comparison_report.h"
#include "command/topology_report.h"
#include "formats/cgmes/import.h"
#include "formats/cgmes/topology_export.h"
#include "formats/failure.h"
#include "formats/import_ids.h"
#include "formats/messages.h"
#include "formats/text_layout.h"

namespace dtsdb::tools {
namespace {

struct TopologyOptions {
  ModelName model;
  ModelName output;
  std::string exportTo;  ///< "tp:" and the folder of the profiles to be written; empty for none
  std::string created;   ///< time of these
  bool comparesPublished = false;
  Place place;
  std::string sheet;
  Language language = LocaleLanguage();
  Format format = Format::kText;
};

constexpr const char* kTopologyFooter =
    "A model without the mark of a good validation is validated first.\n"
    "The result has five sheets: islands, sections, contents, dead and findings. CSV holds one, islands unless "
    "--sheet\n"
    "names another.\n\n"
    "Examples:\n"
    "  dtsdb topology examples/ieee14\n"
    "  dtsdb topology grid.obj -o live.obj\n"
    "  dtsdb topology grid.obj --format csv --sheet contents\n"
    "  dtsdb topology cgmes:grid,boundary.zip --export tp:out\n"
    "  dtsdb topology cgmes:grid,boundary.zip --compare-tp";

constexpr const char* kTimeFormat = "yyyy-MM-ddTHH:mm:ssZ";

/// What is wrong with the time of an export, or nothing.
std::string WhyNoTime(const std::string& text) {
  const bool isTime = QDateTime::fromString(QString::fromStdString(text), QString::fromLatin1(kTimeFormat)).isValid();
  return isTime ? "" : Quoted(text) + " is no time in UTC such as 2026-11-22T08:00:00Z";
}

constexpr const char* kTopologyPrefix = "tp:";

/// What is wrong with the place of an export, or nothing.
std::string WhyNoExport(const std::string& text) {
  const bool isPlace = text.starts_with(kTopologyPrefix) && text != kTopologyPrefix;
  return isPlace ? "" : Quoted(text) + " isn't of the form tp:DIR";
}

/// The folder that an export goes to. It is none that profiles of the set lie in: the next reading would find two
/// topologies, and the set's own could be written over.
std::string ExportFolder(const TopologyOptions& options) {
  std::string folder = options.exportTo.substr(std::string(kTopologyPrefix).size());
  if (options.model.Form() != ModelForm::kCgmes) return folder;
  for (const std::filesystem::path path : options.model.Paths()) {
    std::error_code ignored;
    const bool isFolder = std::filesystem::is_directory(path, ignored);
    const std::filesystem::path place = isFolder ? path : "." / path.parent_path();
    if (!std::filesystem::equivalent(place, folder, ignored)) continue;
    throw Failure(kExitUsage, folder + " holds the profiles that were read; name another folder behind tp:");
  }
  return folder;
}

/// The objects behind a model's records: those of the set that was read, or else those kept beside the model.
ImportReport ObjectsOf(const ImportedModel& imported, const ModelName& name) {
  if (!imported.report.identities.empty()) return imported.report;
  ImportReport report = ReadIds(name);
  if (report.identities.empty()) {
    WriteMessage(fmt::format("{}: no {} lies beside it: the mRIDs written are derived from its identities", name.Text(),
                             IdsPath(name)));
  }
  return report;
}

void Export(const TopologyOptions& options, const ImportedModel& imported, DTSDB& tables) {
  const std::string now = QDateTime::currentDateTimeUtc().toString(QString::fromLatin1(kTimeFormat)).toStdString();
  const cgmes::ExportedTopology exported =
      cgmes::ExportTopology(tables, ObjectsOf(imported, options.model), ExportFolder(options),
                            options.created.empty() ? now : options.created);
  if (exported.withoutVoltage > 0) {
    WriteMessage(fmt::format("{} written without a base voltage, which the profile asks for: the set has none there",
                             Counted(exported.withoutVoltage, "topological node")));
  }
  for (const std::string& file : exported.files) WriteMessage("written: " + file);
}

/// Refuses what --compare-tp can't compare.
void CheckComparable(const TopologyOptions& options) {
  if (options.model.Form() != ModelForm::kCgmes) {
    throw Failure(kExitUsage,
                  options.model.Text() + " is no CGMES set: --compare-tp compares with the TP profile of one");
  }
  if (!options.place.IsEmpty()) {
    throw Failure(kExitUsage, "--compare-tp compares the whole set: it goes with neither --station nor --kv");
  }
}

/// Prints the topology of a set beside the one that it publishes.
int Compare(const TopologyOptions& options, const cgmes::ProfileSet& set, const ImportReport& report, DTSDB& tables) {
  const cgmes::TopologyComparison comparison = cgmes::CompareWithPublished(set, options.model.Import(), report, tables);
  if (!comparison.note.empty()) WriteMessage(comparison.note);
  WriteReport(ComparisonReport(comparison), options.format, options.sheet);
  return IsAsPublished(comparison) ? kExitGood : kExitFaults;
}

int ShowTopology(const TopologyOptions& options) {
  const bool compares = options.comparesPublished;
  if (compares) CheckComparable(options);
  cgmes::ProfileSet set;
  const ImportedModel imported = compares ? LoadImported(options.model, set) : LoadImported(options.model);
  analysis::Model model = analysis::Model::Of(imported.tables, options.model.Text());
  const PlaceFilter filter(options.place, model.Tables());
  analysis::Topology topology = Take(analysis::WorkOutTopology(model));
  if (!options.output.IsEmpty()) {
    Take(model.Save(options.output.Text()));
    WriteIdsBeside(imported, options.output);
  }
  if (!options.exportTo.empty()) Export(options, imported, model.Tables());
  if (compares) return Compare(options, set, imported.report, model.Tables());
  filter.Restrict(topology);
  WriteReport(TopologyReport(topology, options.language), options.format, options.sheet);
  return kExitGood;
}

}  // namespace

void AddTopology(CommandLine& app, Action& action) {
  AddCommand<TopologyOptions>(
      app, action, "topology", "Work out and show bus sections, islands and what is dead",
      [](CommandLine& command, TopologyOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddImportOptions(command, options.model);
        AddOutputOption(command, options.output, "Write the model with its topology to OUT");
        command
            .Add("--export", options.exportTo,
                 "Write the topology as CGMES profiles, TP and the islands of SV, into the folder DIR")
            .Shown("tp:DIR")
            .Checked(WhyNoExport);
        command.Add("--created", options.created, "The time that --export writes as that of its files (default: now)")
            .Shown("TIME")
            .Checked(WhyNoTime);
        command.AddFlag("--compare-tp", options.comparesPublished,
                        "Compare with the topological nodes and islands that the CGMES set publishes");
        AddPlaceOptions(command, options.place);
        AddSheetOption(command, options.sheet,
                       "islands, sections, contents, dead or findings; with --compare-tp differences or by_design");
        AddLanguageOption(command, options.language);
        AddLogOption(command, "the validation where the model needs one");
        AddFormatOption(command, options.format);
        command.Footer(kTopologyFooter);
        AddExitCodes(command, "the topology is worked out; with --compare-tp nothing differs but by design",
                     "the model has errors, its topology can't be worked out, or with --compare-tp differs otherwise");
      },
      ShowTopology);
}

}  // namespace dtsdb::tools
