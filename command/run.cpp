#include <algorithm>
#include <csignal>
#include <ctime>
#include <optional>

#include "command/commands.h"
#include "command/service_manager.h"
#include "command/task_lock.h"
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
  Format format = Format::kText;
};

constexpr int kLongestInterval = 3600 * 1000;

constexpr const char* kRunFooter =
    "The database must hold a model that is marked good: 'dtsdb validate MODEL -o rtdb:NAME' makes one.\n"
    "Its topology is worked out and stored at the start. Then rows that other programs add to TPTRACE, with the time\n"
    "of their writing in seconds since 1970, are followed up by incremental runs, each stored in one commit and\n"
    "reported in one line. SIGTERM or Ctrl-C ends the command between two commits. SIGHUP has the model read again, "
    "and\n"
    "so has another program that replaces it. A database has one such task; a second one is refused.\n\n"
    "Examples:\n"
    "  dtsdb run rtdb:grid\n"
    "  dtsdb rtdb put grid TPTRACE id=1 name='Breaker 7' type=1 status=0 time=$(date +%s)\n"
    "  dtsdb run rtdb:grid --once --verify\n"
    "  dtsdb run rtdb:grid --format json >> grid.log";

/// Keeps the signals that the command answers waiting from now on, so that they take effect at Wait alone. A second one
/// that ends the program has none.
class Signals {
 public:
  enum class Wish { kGoOn, kReload, kStop };

  Signals() {
    ::sigemptyset(&m_signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) ::sigaddset(&m_signals, signal);
    ::sigprocmask(SIG_BLOCK, &m_signals, nullptr);
  }

  /// Waits for so many milliseconds, or until a signal comes.
  Wish Wait(int milliseconds) {
    timespec time{};
    time.tv_sec = milliseconds / 1000;
    time.tv_nsec = (milliseconds % 1000) * 1000000L;
    const int signal = ::sigtimedwait(&m_signals, nullptr, &time);
    if (signal == -1) return Wish::kGoOn;
    return signal == SIGHUP ? Wish::kReload : Wish::kStop;
  }

 private:
  sigset_t m_signals{};
};

/// Waits as Signals::Wait does, and gives the service manager its signs of life meanwhile.
Signals::Wish WaitAlive(Signals& held, int milliseconds, const ServiceManager& manager) {
  for (int left = milliseconds;;) {
    manager.Alive();
    const int part = std::min(left, manager.LongestSilence());
    const Signals::Wish wish = held.Wait(part);
    left -= part;
    if (wish != Signals::Wish::kGoOn || left == 0) return wish;
  }
}

/// The task of a database, begun anew whenever the model has to be read again.
class Service {
 public:
  Service(RealtimeDatabase& database, TopologyTask::Options options, TaskLog log)
      : m_database(database), m_options(options), m_log(log) {}

  /// A Failure when the model isn't marked good or has no topology.
  void Start() { m_task.emplace(m_database, m_options, m_log).Start(); }

  void Look() {
    if (!m_task->Look()) StartAgain(TaskLog::Reload::kReplaced);
  }

  /// Reads the model again. One that can't be used is reported, and waited for until it is replaced.
  void StartAgain(TaskLog::Reload why) {
    m_log.ReadAgain(why);
    m_good = IsGood();
    try {
      Start();
    } catch (const Failure& failure) {
      if (failure.Code() != kExitFaults) throw;
      m_log.Message(std::string(failure.what()) + "; the task waits for another model");
      m_good = false;
    }
  }

  bool IsGood() const { return m_good && m_task->IsGood(); }

 private:
  RealtimeDatabase& m_database;
  TopologyTask::Options m_options;
  TaskLog m_log;
  std::optional<TopologyTask> m_task;
  bool m_good = true;  // all tasks before
};

int Run(const RunOptions& options) {
  if (!options.model.IsDatabase()) {
    throw Failure(kExitUsage, options.model.Text() + " is no realtime database; one is written rtdb:NAME");
  }
  const std::string& name = options.model.Path();
  Signals held;
  { const RealtimeDatabase existing(name, dbDatabase::dbReadOnly); }  // a missing one is reported and not made
  const TaskLock lock(name);
  RealtimeDatabase database(name, dbDatabase::dbAllAccess);
  Service service(database, {options.indications, options.asIs, options.verify}, TaskLog(options.format));
  const ServiceManager manager;
  service.Start();
  manager.Ready();
  for (;;) {
    service.Look();
    if (options.once) break;
    const Signals::Wish wish = WaitAlive(held, options.interval, manager);
    if (wish == Signals::Wish::kStop) break;
    if (wish == Signals::Wish::kReload) service.StartAgain(TaskLog::Reload::kSignal);
  }
  manager.Stopping();
  return service.IsGood() ? kExitGood : kExitFaults;
}

/// The option --format of a command that writes line by line.
void AddLineFormatOption(CommandLine& command, Format& format) {
  const auto choose = [&format](const std::string& name) { format = name == "json" ? Format::kJson : Format::kText; };
  command.AddChoice("--format", choose, {"text", "json"},
                    "text for people (default), json for programs: an object a line, in UTF-8");
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
        AddLineFormatOption(command, options.format);
        command.Footer(kRunFooter);
        AddExitCodes(command, "it was stopped", "a run failed or, with --verify, differs from a full one");
      },
      Run);
}

}  // namespace dtsdb::tools
