#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <string_view>
#include <system_error>

#include "command/commands.h"
#include "formats/failure.h"
#include "formats/model_io.h"
#include "generate/generator.h"

namespace dtsdb::tools {
namespace {

struct GenerateOptions {
  ModelName output;
  GeneratorOptions utility;
};

constexpr int kMostShare = 1000000;

constexpr const char* kGenerateFooter =
    "The same options and the same seed give the same model, byte for byte. Its powers balance at\n"
    "every voltage, as 'dtsdb flow' shows.\n"
    "OUT is as with 'dtsdb convert', with or without -o in front of it.\n\n"
    "Arrangements: {}. Those not named in LIST have the share 0.\n\n"
    "Examples:\n"
    "  dtsdb generate --stations 100 --seed 7 -o grid.obj\n"
    "  dtsdb generate --stations 20 --arrangements double=70,ring=30 -o rings.obj\n"
    "  dtsdb generate --stations 3 -o small/";

std::string ArrangementNames() {
  std::string names;
  for (int i = 0; i < kArrangements; ++i) {
    names += fmt::format("{}{}", i == 0 ? "" : ", ", DataOf(static_cast<Arrangement>(i)).name);
  }
  return names;
}

/// Enters "double=70" into `shares`.
void ReadShare(std::string_view entry, ArrangementShares& shares) {
  const std::size_t equals = entry.find('=');
  const std::string_view name = entry.substr(0, equals);
  const std::string_view number = equals == std::string_view::npos ? "" : entry.substr(equals + 1);
  for (int i = 0; i < kArrangements; ++i) {
    if (name != DataOf(static_cast<Arrangement>(i)).name) continue;
    int share = -1;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), share);
    if (error == std::errc() && end == number.data() + number.size() && share >= 0 && share <= kMostShare) {
      shares[static_cast<std::size_t>(i)] = share;
      return;
    }
    throw Failure(kExitUsage, fmt::format("--arrangements: the share of {} is a number from 0 to {}, as in {}=30", name,
                                          kMostShare, name));
  }
  throw Failure(kExitUsage,
                fmt::format("--arrangements: there is no arrangement '{}'; there are {}", name, ArrangementNames()));
}

ArrangementShares ReadShares(std::string_view list) {
  ArrangementShares shares{};
  for (std::size_t begin = 0; begin <= list.size();) {
    const std::size_t end = std::min(list.find(',', begin), list.size());
    ReadShare(list.substr(begin, end - begin), shares);
    begin = end + 1;
  }
  return shares;
}

void AddShares(CommandLine& command, GeneratorOptions& utility) {
  command
      .Add(
          "--arrangements", [&utility](const std::string& list) { utility.arrangements = ReadShares(list); },
          "How often each arrangement of busbars is chosen, by default as is usual at each voltage")
      .Shown("LIST");
  const auto percent = [&command](const char* name, int& value, const char* what) {
    command.Add(name, value, fmt::format("{}, {} by default", what, value)).Within(0, 100).Shown("PERCENT");
  };
  percent("--three-windings", utility.threeWindings,
          "Stations with three voltages that join them by three windings each");
  percent("--dc-lines", utility.dcLines, "Stations of 220 kV and more with a DC line to one before them");
  percent("--zero-impedance", utility.zeroImpedance, "Closed couplers that carry a zero-impedance branch");
}

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
        AddShares(command, options.utility);
        command.Footer(fmt::format(kGenerateFooter, ArrangementNames()));
        AddExitCodes(command, "the model is written");
      },
      Generate);
}

}  // namespace dtsdb::tools
