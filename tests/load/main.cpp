// An installation under load: writers of events, readers, viewers of the page, and the topology task, which is ended
// and started again and again. Every event is accounted for. tests/load/README.md describes it.

#include <CLI/CLI.hpp>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <exception>

#include "tests/load/load.h"

namespace {

struct Arguments {
  dtsdb::load::Options options;
  std::string format = "text";
};

void AddOptions(CLI::App& app, Arguments& arguments) {
  dtsdb::load::Options& options = arguments.options;
  app.add_option("--dtsdb", options.dtsdb, "The command dtsdb")->required();
  app.add_option("--folder", options.folder,
                 "Where the store is made and left, an empty folder, best in memory; "
                 "without it one below TMPDIR that is removed");
  app.add_option("--minutes", options.minutes, "How long events are written");
  app.add_option("--stations", options.stations, "Size of the network");
  app.add_option("--rate", options.rate, "Events a second, of all writers together");
  app.add_option("--writers", options.writers, "Writers")->check(CLI::Range(1, dtsdb::load::kMostActors));
  app.add_option("--readers", options.readers, "Readers")->check(CLI::Range(1, dtsdb::load::kMostActors));
  app.add_option("--viewers", options.viewers, "Viewers of the page")->check(CLI::Range(1, 30));
  app.add_option("--restart", options.restart_s,
                 "Seconds between two restarts of the topology task, 0 for none; by "
                 "default 60, in short loads a third of their time");
  app.add_option("--prune", options.prune_s, "Seconds between two prunings of the trace and the log");
  app.add_option("--keep", options.keep_s, "Seconds of the trace and the log that a pruning leaves");
  app.add_option("--interval", options.interval_ms, "Milliseconds between two looks of the topology task");
  app.add_option("--seed", options.seed, "Another network, and another order of events");
  app.add_option("--lines", options.lines, "A file that keeps the lines of the topology task");
  app.add_option("--format", arguments.format, "text or json")->check(CLI::IsMember({"text", "json"}));
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App app(
      "Puts an installation under load and accounts for every event. Exit code 0 when all promises hold, 1 when "
      "one is broken, 3 when the load can't be run.");
  Arguments arguments;
  AddOptions(app, arguments);
  CLI11_PARSE(app, argc, argv);
  dtsdb::load::Options& options = arguments.options;
  if (app.count("--restart") == 0) options.restart_s = std::min(options.restart_s, options.minutes * 60 / 3);
  try {
    const QTemporaryDir own;
    if (options.folder.empty()) options.folder = own.path().toStdString();
    const dtsdb::load::Figures figures = dtsdb::load::RunLoad(arguments.options);
    const std::string text =
        arguments.format == "json" ? dtsdb::load::FiguresAsJson(figures) : dtsdb::load::FiguresAsText(figures);
    std::fputs(text.c_str(), stdout);
    return dtsdb::load::AllHold(figures) ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "dtsdb_load: %s\n", error.what());
    return 3;
  }
}
