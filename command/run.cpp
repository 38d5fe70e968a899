#include <csignal>
#include <ctime>

#include "command/commands.h"
#include "command/topology_task.h"
#include "formats/failure.h"

namespace dtsdb::tools {
namespace {

struct RunOptions {
  ModelName model;
  bool once = false;
  bool indications = false;
  bool asIs = false;
  bool verify = false;
  int interval = 1000;
};

constexpr int kLongestInterval = 3600 * 1000;

constexpr const char* kFooter =
    "The database must hold a model that is marked good: 'dtsdb validate MODEL -o rtdb:NAME' makes one.\n"
    "Its topology is worked out and stored at the start. Then rows that other programs add to TPTRACE, with the time\n"
    "of their writing in seconds since 1970, are followed up by incremental runs, each stored in one commit and\n"
    "reported in one line. SIGTERM or Ctrl-C ends the command between two commits.\n\n"
    "Examples:\n"
    "  dtsdb run rtdb:grid\n"
    "  dtsdb rtdb put grid TPTRACE id=1 name='Breaker 7' type=1 status=0 time=$(date +%s)\n"
    "  dtsdb run rtdb:grid --once --verify";

/// Keeps the signals that end a program waiting from now on, so that they take effect at Wait alone, and a second one
/// not at all.
class StopSignals {
 public:
  StopSignals() {
    ::sigemptyset(&m_signals);
    ::sigaddset(&m_signals, SIGTERM);
    ::sigaddset(&m_signals, SIGINT);
    ::sigprocmask(SIG_BLOCK, &m_signals, nullptr);
  }

  /// Waits for so many milliseconds. True as soon as the program is to end.
  bool Wait(int milliseconds) {
    timespec time{};
    time.tv_sec = milliseconds / 1000;
    time.tv_nsec = (milliseconds % 1000) * 1000000L;
    return ::sigtimedwait(&m_signals, nullptr, &time) != -1;
  }

 private:
  sigset_t m_signals{};
};

int Run(const RunOptions& options) {
  if (!options.model.IsDatabase()) {
    throw Failure(kExitUsage, options.model.Text() + " is no realtime database; one is written rtdb:NAME");
  }
  const std::string& name = options.model.Path();
  StopSignals stop;
  { const RealtimeDatabase existing(name, dbDatabase::dbReadOnly); }  // a missing one is reported and not made
  RealtimeDatabase database(name, dbDatabase::dbAllAccess);
  TopologyTask task(database, {options.indications, options.asIs, options.verify});
  task.Start();
  do {
    task.Look();
  } while (!options.once && !stop.Wait(options.interval));
  return task.IsGood() ? kExitGood : kExitFaults;
}

}  // namespace

void AddRun(CommandLine& app, Action& action) {
  AddCommand<RunOptions>(
      app, action, "run", "Follow up the trace of a realtime database, until stopped",
      [](CommandLine& command, RunOptions& options) {
        AddModelArgument(command, options.model, "MODEL", "The realtime database, rtdb:NAME").Required();
        command.AddFlag("--once", options.once, "Follow up what is there and end");
        command.Add("--interval", options.interval, "Look for rows each MS milliseconds (default 1000)")
            .Shown("MS")
            .Within(1, kLongestInterval);
        command.AddFlag("--status", options.indications, "Take the breakers' positions from STATUS at the start");
        command.AddFlag("--as-is", options.asIs, "Keep what incremental runs give, also where a full one differs");
        command.AddFlag("--verify", options.verify, "Compare each run with a full one on a copy");
        command.Footer(kFooter);
        AddExitCodes(command, "it was stopped", "a run failed or, with --verify, differs from a full one");
      },
      Run);
}

}  // namespace dtsdb::tools
