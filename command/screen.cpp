#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <optional>
#include <string_view>

#include "analysis/screening.h"
#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/progress.h"
#include "command/screening_report.h"
#include "formats/failure.h"
#include "formats/field_text.h"
#include "formats/files.h"
#include "formats/text_layout.h"
#include "model/threads.h"
#include "script/script_lines.h"

namespace dtsdb::tools {
namespace {

using analysis::Outage;

constexpr std::size_t kShownInText = 20;

struct ScreenOptions {
  ModelName model;
  std::string kinds = "LN,XF,CB,BUS,UN";
  std::string pairs;
  std::optional<int> sample;
  unsigned long long seed = 1;
  std::optional<int> jobs;
  std::optional<int> top;
  std::string sheet;
  Language language = LocaleLanguage();
  Format format = Format::kText;
};

constexpr const char* kScreenFooter =
    "KINDS are tables, parted by commas: LN and XF lines and windings, CB breakers, BUS buses, UN units, DLN and ZBR\n"
    "DC lines and zero-impedance branches. Of a bus every breaker on its node is opened. What is out already is left\n"
    "out.\n"
    "LIST names outages, such as 'LN L1 CB B1 BUS I'; as @FILE they stand in FILE, one or several a line.\n"
    "The result has five sheets: outages, stations, islands, lost and findings. Text shows lost, all that loses "
    "supply,\n"
    "with --sheet lost only. CSV holds one, outages unless --sheet names another.\n\n"
    "Examples:\n"
    "  dtsdb screen examples/ieee14\n"
    "  dtsdb screen grid.obj --kinds LN,XF --jobs 2 --top 100\n"
    "  dtsdb screen grid.obj --pairs 'LN L1 LN L2 XF T1'\n"
    "  dtsdb screen grid.obj --kinds LN --sample 1000 --format csv";

/// The kinds in a list that is parted by commas, each once.
std::vector<std::string> Kinds(const std::string& list) {
  std::vector<std::string> kinds;
  std::string_view rest = list;
  while (true) {
    const std::size_t comma = rest.find(',');
    const std::string kind(rest.substr(0, comma));
    if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) kinds.push_back(kind);
    if (comma == std::string_view::npos) break;
    rest.remove_prefix(comma + 1);
  }
  return kinds;
}

/// Takes the outages of one line: table and identity, one behind the other. One that is there already isn't taken
/// again.
void TakeOutages(std::string_view line, std::vector<Outage>& outages) {
  const std::vector<std::string> words = SplitWords(line);
  for (std::size_t i = 0; i < words.size(); i += 2) {
    if (i + 1 == words.size()) throw Failure(kExitUsage, "behind " + Quoted(words[i]) + " the identity is missing");
    Outage outage = {{words[i], words[i + 1]}};
    if (std::find(outages.begin(), outages.end(), outage) == outages.end()) outages.push_back(std::move(outage));
  }
}

/// The outages that --pairs names.
std::vector<Outage> NamedOutages(const std::string& list) {
  std::vector<Outage> outages;
  if (list.starts_with('@')) {
    const std::string file = list.substr(1);
    ForEachLine(file, ReadFile(file, kMostScriptBytes), kExitUsage,
                [&](int, std::string_view line) { TakeOutages(UserText(std::string(line)), outages); });
  } else {
    TakeOutages(UserText(list), outages);
  }
  if (outages.size() < 2) throw Failure(kExitUsage, "--pairs needs two outages at least, such as 'LN L1 LN L2'");
  return outages;
}

std::vector<Outage> OutagesOf(const analysis::Model& model, const ScreenOptions& options) {
  if (!options.pairs.empty()) return analysis::AllPairs(NamedOutages(options.pairs));
  std::vector<Outage> outages = Take(analysis::SingleOutages(model, Kinds(options.kinds)));
  if (!options.sample) return outages;
  return analysis::SamplePairs(outages, static_cast<std::size_t>(*options.sample), options.seed);
}

/// How many outages are shown: text has room for few, programs take all.
std::size_t Shown(const ScreenOptions& options) {
  if (options.top) return static_cast<std::size_t>(*options.top);
  return options.format == Format::kText ? kShownInText : std::numeric_limits<std::size_t>::max();
}

int Screen(const ScreenOptions& options) {
  analysis::Model model = OpenModel(options.model);
  Take(model.RequireGood(options.language));
  const std::vector<Outage> outages = OutagesOf(model, options);
  analysis::ScreeningOptions how;
  how.jobs = static_cast<std::size_t>(options.jobs.value_or(ThreadCount()));
  std::optional<Progress> progress(std::in_place, outages.size(), "outages");
  how.progress = [&](std::size_t done) { progress->Show(done); };
  const analysis::Screening screening = Take(analysis::Screen(model, outages, how));
  progress.reset();
  WriteReport(ScreeningReport(screening, Shown(options), options.language), options.format, options.sheet);
  const auto failed = [](const analysis::OutageResult& result) { return !result.failure.empty(); };
  return std::any_of(screening.outages.begin(), screening.outages.end(), failed) ? kExitFaults : kExitGood;
}

}  // namespace

void AddScreen(CommandLine& app, Action& action) {
  AddCommand<ScreenOptions>(
      app, action, "screen", "Try outages out and list them by what they cost",
      [](CommandLine& command, ScreenOptions& options) {
        constexpr int kAny = std::numeric_limits<int>::max();
        AddModelArgument(command, options.model).Required();
        command.Add("--kinds", options.kinds, "What may go out, LN,XF,CB,BUS,UN by default").Shown("KINDS");
        const Parameter pairs = command.Add("--pairs", options.pairs, "All pairs of the outages in LIST").Shown("LIST");
        command.Add("--sample", options.sample, "N pairs at random of the outages of KINDS")
            .Within(1, kAny)
            .Shown("N")
            .Excludes(pairs);
        command.Add("--seed", options.seed, "Choice among the samples, 1 by default").Shown("S");
        command.Add("--jobs", options.jobs, "Number of threads, each with a copy of the model; as --threads by default")
            .Within(1, kMostThreads)
            .Shown("N");
        command.Add("--top", options.top, "Only the N outages that cost most; in text 20 by default")
            .Within(1, kAny)
            .Shown("N");
        AddSheetOption(command, options.sheet, "outages, stations, islands, lost or findings");
        AddLanguageOption(command, options.language);
        AddLogOption(command, "the validation where the model needs one");
        AddFormatOption(command, options.format);
        command.Footer(kScreenFooter);
        AddExitCodes(command, "every outage is screened",
                     "the model has errors or no topology, or an outage leaves none");
      },
      Screen);
}

}  // namespace dtsdb::tools
