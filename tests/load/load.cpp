#include "tests/load/load.h"

#include <fmt/format.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <deque>
#include <fstream>
#include <functional>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <optional>
#include <stdexcept>
#include <thread>
#include <utility>

#include "tests/load/actors.h"
#include "tests/load/last_state.h"
#include "tests/load/program.h"
#include "tests/load/store_follower.h"

namespace dtsdb::load {

Notes& Notes::Shared() {
  void* const memory = ::mmap(nullptr, sizeof(Notes), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::runtime_error("there is no memory to share with other processes");
  return *new (memory) Notes;
}

namespace {

constexpr double kAudit_s = 0.5;

double SecondsSince(std::int64_t begin_ns) { return static_cast<double>(NowNs() - begin_ns) / 1e9; }
double Milliseconds(std::int64_t ns) { return static_cast<double>(ns) / 1e6; }

/// Processes that do one job of this program's; killed when this goes.
class Actors {
 public:
  Actors() = default;
  Actors(const Actors&) = delete;
  Actors& operator=(const Actors&) = delete;
  ~Actors() {
    for (const pid_t process : m_processes) ::kill(process, SIGKILL);
    Join();
  }

  /// Before this program has any thread.
  void Add(const std::function<void()>& job) {
    const pid_t process = ::fork();
    if (process < 0) throw std::runtime_error("no further process can be started");
    if (process == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      job();
      ::_exit(0);
    }
    m_processes.push_back(process);
  }
  void Join() {
    for (const pid_t process : std::exchange(m_processes, {})) ::waitpid(process, nullptr, 0);
  }
  double LargestMegabytes() const {
    long most = 0;
    for (const pid_t process : m_processes) most = std::max(most, OwnKilobytes(process));
    return static_cast<double>(most) / 1024;
  }

 private:
  std::vector<pid_t> m_processes;
};

/// Something that is due each so many seconds.
class Every {
 public:
  explicit Every(double seconds) : m_seconds(seconds), m_due(seconds) {}
  bool IsDue(double now) {
    if (m_seconds <= 0 || now < m_due) return false;
    m_due = now + m_seconds;
    return true;
  }

 private:
  double m_seconds;
  double m_due;
};

class Load {
 public:
  explicit Load(const Options& options)
      : m_options(options), m_store(options.folder + "/grid"), m_plan(MakeStore(), options.writers, options.seed) {}

  Figures Run() {
    StartActors();
    StartPage();
    m_follower.emplace(m_store);
    m_account.emplace(m_plan, m_timetable);
    StartTask();
    std::this_thread::sleep_for(std::chrono::nanoseconds(std::max<std::int64_t>(0, m_timetable.begin_ns - NowNs())));
    Work();
    Finish();
    return std::move(m_figures);
  }

 private:
  std::vector<std::string> Command(const std::vector<std::string>& arguments) const {
    std::vector<std::string> words{m_options.dtsdb};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
  }
  std::string Messages() const { return m_options.folder + "/messages.txt"; }

  /// Makes the network and its store, and finds out what can be switched there.
  std::vector<Switchable> MakeStore() {
    const std::string model = m_options.folder + "/grid.obj";
    const std::string store = "rtdb:" + m_store;
    const std::vector<std::vector<std::string>> steps = {{"generate", "--stations", std::to_string(m_options.stations),
                                                          "--seed", std::to_string(m_options.seed), "-o", model},
                                                         {"validate", model, "-o", store},
                                                         {"run", store, "--once"}};
    for (const std::vector<std::string>& step : steps) {
      const int code = RunProgram(Command(step), Messages());
      if (code != 0) throw std::runtime_error(fmt::format("dtsdb {} ended with {}; see {}", step[0], code, Messages()));
    }
    dbDatabase database(dbDatabase::dbReadOnly);
    if (!database.open(m_store.c_str())) throw std::runtime_error(m_store + " can't be opened");
    std::vector<Switchable> found = FindSwitchables(database);
    database.close();
    if (found.size() < 4 * static_cast<std::size_t>(m_options.writers)) {
      throw std::runtime_error("too few loads stand alone behind a breaker; take more stations");
    }
    return found;
  }

  void StartActors() {
    constexpr std::int64_t kHeadStart_ns = 2'000'000'000;  // until the task has stored its first results
    m_timetable = {NowNs() + kHeadStart_ns, m_options.rate, m_options.writers};
    for (int i = 0; i < m_options.writers; ++i) {
      m_writers.Add([this, i] { WriteEvents(m_store, m_plan, m_timetable, i, m_notes); });
    }
    for (int i = 0; i < m_options.readers; ++i) m_readers.Add([this, i] { ReadRows(m_store, m_plan, i, m_notes); });
    m_watchers.Add([this] { WatchPage(m_options.viewers, m_notes); });
  }

  void StartPage() {
    m_serve.emplace(Command({"serve", "rtdb:" + m_store, "--port", "0"}), Messages());
    const std::string address = m_serve->FirstLine();
    if (address.empty()) throw std::runtime_error("dtsdb serve has ended; see " + Messages());
    address.copy(m_notes.page, sizeof(m_notes.page) - 1);
    m_notes.hasPage = true;
  }

  void StartTask() {
    m_account->Begin(m_follower->TakenAgainFrom());
    m_task = std::make_unique<Program>(
        Command({"run", "rtdb:" + m_store, "--format", "json", "--interval", std::to_string(m_options.interval_ms)}),
        Messages());
  }

  /// Ends the task between two commits or in the middle of anything, in turns, and starts the next one.
  void RestartTask() {
    m_task->Signal(++m_figures.restarts % 2 == 1 ? SIGTERM : SIGKILL);
    EndTask(m_figures.restarts % 2 == 1 ? 0 : 128 + SIGKILL);
    StartTask();
  }

  void EndTask(int expected) {
    const int code = m_task->End();
    if (code != expected) m_figures.faults.push_back(fmt::format("dtsdb run ended with {}, not {}", code, expected));
    Audit();
    m_account->End();
  }

  /// Goes on with the account: the lines first, so that what they are about is in the store when it is read.
  void Audit() {
    std::vector<RunLine> runs;
    for (const TimedLine& line : m_task->Lines()) TakeLine(line, runs);
    m_follower->Read();
    m_account->AddTraced(m_follower->TakeEvents());
    m_account->AddLog(m_follower->TakeLog());
    for (const RunLine& run : runs) m_account->AddRun(run);
  }

  void TakeLine(const TimedLine& line, std::vector<RunLine>& runs) {
    if (!m_options.lines.empty()) m_lines << line.text << '\n';
    const nlohmann::json object = nlohmann::json::parse(line.text, nullptr, false);
    if (object.is_discarded()) {
      m_figures.faults.push_back("dtsdb run wrote: " + line.text);
      return;
    }
    const std::string event = object.value("event", "");
    if (event != "run" && event != "start" && m_figures.faults.size() < 20) {
      m_figures.faults.push_back("dtsdb run: " + line.text);
    }
    if (event != "run") return;
    RunLine run;
    run.isIncremental = object["kind"] == "incremental";
    run.failed = object["kind"] == "failed";
    run.rows = object["rows"];
    if (object["log_first"].is_number()) run.logFirst = object["log_first"];
    if (object["log_last"].is_number()) run.logLast = object["log_last"];
    run.at_ns = line.at_ns;
    runs.push_back(run);
  }

  void Work() {
    Every audit(kAudit_s);
    Every sample(1);
    Every restart(m_options.restart_s);
    Every prune(m_options.prune_s);
    const double end = m_options.minutes * 60;
    for (double now = 0; now < end; now = SecondsSince(m_timetable.begin_ns)) {
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      if (audit.IsDue(now)) Audit();
      if (sample.IsDue(now)) Sample(now);
      if (restart.IsDue(now) && now + std::min(5.0, m_options.restart_s / 2) < end) RestartTask();
      if (prune.IsDue(now)) StartPruning();
      GoOnPruning();
      if (m_task->Ended()) throw std::runtime_error("dtsdb run has ended by itself; see " + Messages());
    }
    m_figures.seconds = SecondsSince(m_timetable.begin_ns);
  }

  void Sample(double now) {
    struct stat store {};
    ::stat((m_store + ".fdb").c_str(), &store);
    constexpr double kMegabyte = 1024 * 1024;
    m_figures.samples.push_back({now, static_cast<double>(OwnKilobytes(m_task->Number())) / 1024,
                                 static_cast<double>(OwnKilobytes(m_serve->Number())) / 1024,
                                 m_readers.LargestMegabytes(), m_writers.LargestMegabytes(),
                                 static_cast<double>(store.st_size) / kMegabyte});
  }

  void StartPruning() {
    if (m_pruning || !m_prunings.empty()) return;
    m_prunings = {"TPTRACE", "TPL"};
  }

  /// One pruning after the other, beside everything else.
  void GoOnPruning() {
    if (m_pruning) {
      const std::optional<int> code = m_pruning->Ended();
      if (!code) return;
      if (*code != 0) m_figures.faults.push_back(fmt::format("dtsdb rtdb prune ended with {}", *code));
      m_figures.slowestPrune_ms = std::max(m_figures.slowestPrune_ms, Milliseconds(NowNs() - m_pruningBegun_ns));
      ++m_figures.prunings;
      m_pruning.reset();
    }
    if (m_prunings.empty()) return;
    const std::string before = std::to_string(std::time(nullptr) - m_options.keep_s);
    m_pruning.emplace(Command({"rtdb", "prune", m_store, m_prunings.front(), "--before", before}), Messages());
    m_pruningBegun_ns = NowNs();
    m_prunings.pop_front();
  }

  void Finish() {
    m_notes.writersStop = true;
    m_writers.Join();
    const std::int64_t stopped_ns = NowNs();
    constexpr double kLongest_s = 60;
    do {
      std::this_thread::sleep_for(std::chrono::milliseconds(200));
      Audit();
    } while (!m_account->IsUpToDate() && SecondsSince(stopped_ns) < kLongest_s);
    TakeViewers();
    m_notes.stop = true;
    m_readers.Join();
    m_watchers.Join();
    m_task->Signal(SIGTERM);
    EndTask(0);
    m_serve->Signal(SIGTERM);
    if (m_serve->End() != 0) m_figures.faults.emplace_back("dtsdb serve didn't end well");
    m_pruning.reset();
    m_follower.reset();
    Judge();
  }

  void TakeViewers() {
    m_figures.viewers = m_options.viewers;
    for (int i = 0; i < m_options.viewers; ++i) {
      const ViewerNotes& viewer = m_notes.viewers[i];
      m_figures.viewerEvents += viewer.events;
      const bool isFresh = SecondsSince(viewer.last_ns) < 15;
      m_figures.viewersServed += viewer.connected && isFresh ? 1 : 0;
    }
  }

  void Judge() {
    Figures& f = m_figures;
    f.stations = m_options.stations;
    f.components = m_plan.Components();
    f.rate = m_options.rate;
    f.warmUp_s = m_options.keep_s + 2 * m_options.prune_s;
    f.sums = m_account->Result();
    f.faults.insert(f.faults.end(), m_account->Faults().begin(), m_account->Faults().end());
    f.latency = LatencyOf(m_account->Latencies());
    f.overStarts = LatencyOf(m_account->LatenciesOverStarts());
    std::vector<int> events;
    for (int i = 0; i < m_options.writers; ++i) {
      events.push_back(static_cast<int>(m_notes.writers[i].events));
      f.committed += m_notes.writers[i].events;
      f.slowestWrite_ms = std::max(f.slowestWrite_ms, Milliseconds(m_notes.writers[i].slowest_ns));
      if (m_notes.writers[i].failed) f.faults.emplace_back("a writer can't open the store");
    }
    for (int i = 0; i < m_options.readers; ++i) {
      const ReaderNotes& reader = m_notes.readers[i];
      f.rowReads += reader.rows;
      f.tableReads += reader.tables;
      f.torn += reader.torn;
      f.slowestRow_ms = std::max(f.slowestRow_ms, Milliseconds(reader.slowestRow_ns));
      f.slowestTable_ms = std::max(f.slowestTable_ms, Milliseconds(reader.slowestTable_ns));
      if (reader.failed) f.faults.emplace_back("a reader can't open the store");
    }
    f.goodStore = RunProgram(Command({"rtdb", "check", m_store}), Messages()) == 0;
    const LastState last = JudgeLastState(m_store, m_plan, events);
    f.wrongStates = last.wrongStates;
    f.differences = static_cast<int>(last.differences.size());
    f.faults.insert(f.faults.end(), last.differences.begin(), last.differences.end());
  }

  static Latency LatencyOf(std::vector<std::uint32_t> times_us) {
    if (times_us.empty()) return {};
    std::sort(times_us.begin(), times_us.end());
    const auto at = [&](std::size_t percent) { return times_us[(times_us.size() - 1) * percent / 100] / 1000.0; };
    return {at(50), at(99), at(100)};
  }

  Options m_options;
  std::string m_store;
  Plan m_plan;
  Notes& m_notes = Notes::Shared();
  std::ofstream m_lines{m_options.lines, std::ios::app};
  Timetable m_timetable;
  std::optional<Program> m_serve;
  Actors m_writers;
  Actors m_readers;
  Actors m_watchers;
  std::optional<StoreFollower> m_follower;
  std::optional<Account> m_account;
  std::unique_ptr<Program> m_task;
  std::deque<std::string> m_prunings;  // tables that wait
  std::optional<Program> m_pruning;
  std::int64_t m_pruningBegun_ns = 0;
  Figures m_figures;
};

}  // namespace

Figures RunLoad(const Options& options) { return Load(options).Run(); }

}  // namespace dtsdb::load
