#include <fmt/format.h>

#include <QDateTime>
#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <random>
#include <stdexcept>
#include <string>

#include "command/commands.h"
#include "formats/failure.h"
#include "formats/messages.h"
#include "formats/text_layout.h"
#include "relay/follower.h"
#include "relay/nats_stream.h"
#include "relay/publisher.h"
#include "relay/relayed_database.h"

namespace dtsdb::tools {
namespace {

using std::chrono::milliseconds;

struct RelayOptions {
  ModelName database;
  relay::NatsServer server;
  std::string name;
  int interval = 10;
  int keep = 1024;
  bool once = false;
  Format format = Format::kText;
};

constexpr int kMebibyte = 1 << 20;
/// Of what the stream keeps, so much may be sent between two snapshots.
constexpr int kSnapshotsInStream = 4;
constexpr milliseconds kLongestStep{500};
constexpr milliseconds kBetweenPulses{1000};
constexpr milliseconds kBetweenTries{1000};
/// So many times as long as it took to find nothing new it isn't looked for again.
constexpr int kRest = 20;

constexpr const char* kPublishFooter =
    "Sends the changed rows of each commit into a stream that a NATS server with JetStream keeps, and a snapshot of\n"
    "all rows whenever followers may need one. Commits in quick succession are sent as one. The database is only "
    "read.\n"
    "SIGTERM or Ctrl-C ends the command; started again it goes on where it was.\n\n"
    "Examples:\n"
    "  dtsdb relay publish rtdb:grid --to nats://broker\n"
    "  dtsdb relay publish rtdb:grid --to tls://broker:4222 --creds grid.creds --tls-ca ca.pem";

constexpr const char* kFollowFooter =
    "Keeps COPY as the database is that the publisher sends: each commit is applied whole, in one transaction. COPY "
    "is\n"
    "made where it doesn't exist. Other programs read it as any database and can't change it.\n"
    "SIGTERM or Ctrl-C ends the command; started again it catches up.\n\n"
    "Examples:\n"
    "  dtsdb relay follow nats://broker rtdb:grid\n"
    "  dtsdb relay follow nats://broker rtdb:/srv/second --name grid";

constexpr const char* kStatusFooter =
    "The age is the time since the publisher last found nothing newer, by the clocks of both machines.\n\n"
    "Example:\n"
    "  dtsdb relay status rtdb:grid";

constexpr const char* kReleaseFooter =
    "The rows stay, and other programs may change them from now on. A follower that still runs takes no part in it: "
    "end\n"
    "it first.\n\n"
    "Example:\n"
    "  dtsdb relay release rtdb:grid";

/// SIGINT and SIGTERM, which wait from now on in this thread and in those that it starts.
class RelayEnd {
 public:
  RelayEnd() {
    ::sigemptyset(&m_signals);
    for (const int signal : {SIGTERM, SIGINT}) ::sigaddset(&m_signals, signal);
    ::sigprocmask(SIG_BLOCK, &m_signals, nullptr);
  }

  /// Waits so long. True when the program is to end.
  bool Wait(milliseconds time) {
    timespec longest{};
    longest.tv_sec = time.count() / 1000;
    longest.tv_nsec = (time.count() % 1000) * 1000000L;
    m_hasCome = m_hasCome || ::sigtimedwait(&m_signals, nullptr, &longest) != -1;
    return m_hasCome;
  }
  bool HasCome() { return Wait(milliseconds(0)); }

 private:
  sigset_t m_signals{};
  bool m_hasCome = false;
};

/// Writes what happens, a line each.
class RelayLog {
 public:
  using Json = nlohmann::ordered_json;

  explicit RelayLog(Format format) : m_format(format) {}

  void Write(const char* event, const std::string& text, const Json& properties = Json::object()) {
    const std::string time = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toStdString();
    m_trouble.clear();
    if (m_format == Format::kText) return WriteResult(Format::kText, time + " " + OneLine(text) + "\n");
    Json object = {{"time", time}, {"event", event}};
    object.update(properties);
    WriteUtf8(object.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n");
  }

  /// Something that keeps the relay from going on. The same is reported once until something else happens.
  void Trouble(const std::string& why) {
    if (why == m_trouble) return;
    if (m_format == Format::kText) {
      WriteMessage(why);
    } else {
      Write("trouble", why, {{"why", why}});
    }
    m_trouble = why;
  }

 private:
  Format m_format;
  std::string m_trouble;
};

const std::string& DatabasePath(const ModelName& model) {
  if (model.IsDatabase()) return model.Path();
  throw Failure(kExitUsage, model.Text() + " is no realtime database; one is written rtdb:NAME");
}

/// The name under which the database is published.
std::string StreamName(const RelayOptions& options) {
  const std::filesystem::path path(DatabasePath(options.database));
  std::string name =
      !options.name.empty() ? options.name : (path.extension() == ".fdb" ? path.stem() : path.filename()).string();
  const std::string wrong = relay::WhyNoStreamName(name);
  if (!wrong.empty()) throw Failure(kExitUsage, Quoted(name) + ": " + wrong + "; give one with --name");
  return name;
}

void CheckServer(const relay::NatsServer& server) {
  try {
    relay::ParseServerUrls(server.urls);
  } catch (const std::invalid_argument& error) {
    throw Failure(kExitUsage, error.what());
  }
  if (server.certificate.empty() != server.key.empty()) {
    throw Failure(kExitUsage, "--tls-cert and --tls-key belong together");
  }
}

/// What can't be cured by waiting ends the command.
void RequireHope(const relay::StreamError& error) {
  if (error.What() == relay::StreamError::Kind::kUnreachable) return;
  const bool isMoved = error.What() == relay::StreamError::Kind::kMoved;
  throw Failure(kExitFile, std::string(error.what()) +
                               (isMoved ? ": another program publishes under this name; end one of the two" : ""));
}

/// Connects, again and again until that is done. Null when the program is to end.
std::unique_ptr<relay::NatsStreams> Connect(const RelayOptions& options, RelayEnd& end, RelayLog& log) {
  const std::string name = StreamName(options);
  do {
    try {
      return std::make_unique<relay::NatsStreams>(options.server, name);
    } catch (const relay::StreamError& error) {
      RequireHope(error);
      log.Trouble(error.what());
    }
  } while (!end.Wait(kBetweenTries));
  return nullptr;
}

std::uint64_t DrawEpoch() {
  std::random_device random;
  return (std::uint64_t{random()} << 32 | random()) | 1;
}

void Report(RelayLog& log, const relay::Sent& sent) {
  using Kind = relay::Sent::Kind;
  const RelayLog::Json numbers = {{"number", sent.number}, {"rows", sent.rows}, {"bytes", sent.bytes}};
  switch (sent.kind) {
    case Kind::kNothing:
      break;
    case Kind::kEpoch:
      log.Write("epoch", fmt::format("begun anew: a snapshot of {}", Counted(sent.rows, "row")), numbers);
      break;
    case Kind::kGoesOn:
      log.Write("goes_on", fmt::format("goes on behind commit {}", sent.number), {{"number", sent.number}});
      break;
    case Kind::kCommit:
      log.Write("commit",
                fmt::format("commit {}: {}, {}", sent.number, Counted(sent.rows, "row"), Counted(sent.bytes, "byte")),
                numbers);
      break;
    case Kind::kSnapshot:
      log.Write("snapshot", "a new snapshot", {{"number", sent.number}});
      break;
  }
}

/// Looks for commits until the end.
class Publishing {
 public:
  Publishing(const RelayOptions& options, relay::NatsStreams& streams, RelayEnd& end, RelayLog& log)
      : m_options(options),
        m_database(options.database.Path()),
        m_streams(streams),
        m_end(end),
        m_log(log),
        m_publisher(relay::DatabaseImage(relay::CarriedTables()),
                    [this](relay::DatabaseImage& image) { return m_database.Read(image); }, streams.Commits(),
                    streams.Snapshots(), {static_cast<std::size_t>(Keep() / kSnapshotsInStream), DrawEpoch}) {}

  int Run() {
    bool isMade = false;
    do {
      const auto begin = std::chrono::steady_clock::now();
      milliseconds rest(m_options.interval);
      try {
        if (!isMade) m_streams.Make(static_cast<std::size_t>(Keep()));
        isMade = true;
        const bool isNothing = Look();
        const auto taken = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
        if (isNothing && m_options.once) return kExitGood;
        if (isNothing) rest = std::max(rest, kRest * taken);
      } catch (const relay::StreamError& error) {
        RequireHope(error);
        isMade = false;
        rest = Trouble(error.what());
      } catch (const Failure& failure) {
        rest = Trouble(failure.what());
      }
      if (m_end.Wait(rest)) break;
    } while (true);
    return kExitGood;
  }

 private:
  std::int64_t Keep() const { return std::int64_t{m_options.keep} * kMebibyte; }

  bool Look() {
    const relay::Sent sent = m_publisher.Look();
    Report(m_log, sent);
    const auto now = std::chrono::steady_clock::now();
    const bool isNothing = sent.kind == relay::Sent::Kind::kNothing;
    if (isNothing && now >= m_pulseDue) {
      m_publisher.Pulse();
      m_pulseDue = now + kBetweenPulses;
    }
    return isNothing;
  }

  milliseconds Trouble(const char* why) {
    m_log.Trouble(why);
    return kBetweenTries;
  }

  const RelayOptions& m_options;
  relay::PublishedDatabase m_database;
  relay::NatsStreams& m_streams;
  RelayEnd& m_end;
  RelayLog& m_log;
  relay::Publisher m_publisher;
  std::chrono::steady_clock::time_point m_pulseDue{};
};

int Publish(const RelayOptions& options) {
  CheckServer(options.server);
  RelayEnd end;
  RelayLog log(options.format);
  { const relay::PublishedDatabase existing(DatabasePath(options.database)); }  // a missing one is reported
  const auto streams = Connect(options, end, log);
  return streams ? Publishing(options, *streams, end, log).Run() : kExitGood;
}

void Report(RelayLog& log, const relay::Followed& followed, const relay::Follower& follower) {
  using Kind = relay::Followed::Kind;
  const auto number = follower.Note() ? follower.Note()->number : 0;
  const RelayLog::Json numbers = {{"number", number}, {"rows", followed.rows}};
  const std::string rows = Counted(followed.rows, "row");
  switch (followed.kind) {
    case Kind::kCurrent:
      break;
    case Kind::kCommit:
      log.Write("commit", fmt::format("commit {}: {}", number, rows), numbers);
      break;
    case Kind::kSnapshot:
      log.Write("snapshot", fmt::format("a snapshot of {}, behind commit {}", rows, number), numbers);
      break;
    case Kind::kLost:
      log.Write("lost", followed.why + ": a snapshot is needed", {{"why", followed.why}});
      break;
    case Kind::kNoSnapshot:
      log.Trouble("there is no snapshot yet; is the publisher running?");
      break;
    case Kind::kOtherLayout:
      log.Trouble("the publisher's tables have other columns than this program's: use one version on both machines");
      break;
  }
}

/// Follows until the end. A copy that was lost is opened anew.
class Following {
 public:
  Following(const RelayOptions& options, relay::NatsStreams& streams, RelayEnd& end, RelayLog& log)
      : m_options(options), m_streams(streams), m_end(end), m_log(log) {}

  int Run() {
    Open();
    for (milliseconds rest{0}; !m_end.Wait(rest);) {
      rest = milliseconds(0);
      try {
        if (!m_follower) Open();
        const relay::Followed followed = m_follower->Step(kLongestStep);
        Report(m_log, followed, *m_follower);
        if (m_options.once && followed.kind == relay::Followed::Kind::kCurrent) break;
      } catch (const relay::StreamError& error) {
        RequireHope(error);
        m_log.Trouble(error.what());
        rest = kBetweenTries;
      } catch (const Failure& failure) {
        m_follower.reset();
        m_copy.reset();
        m_log.Trouble(failure.what());
        rest = kBetweenTries;
      }
    }
    return kExitGood;
  }

 private:
  void Open() {
    m_copy.emplace(m_options.database.Path());
    m_follower.emplace(m_copy->Rows(), m_streams.Commits(), m_streams.Snapshots(),
                       relay::ParseServerUrls(m_options.server.urls).Shown() + " " + StreamName(m_options));
  }

  const RelayOptions& m_options;
  relay::NatsStreams& m_streams;
  RelayEnd& m_end;
  RelayLog& m_log;
  std::optional<relay::KeptCopy> m_copy;
  std::optional<relay::Follower> m_follower;
};

int Follow(const RelayOptions& options) {
  CheckServer(options.server);
  RelayEnd end;
  RelayLog log(options.format);
  { const relay::KeptCopy copy(DatabasePath(options.database)); }  // one that can't be kept is reported
  const auto streams = Connect(options, end, log);
  return streams ? Following(options, *streams, end, log).Run() : kExitGood;
}

std::string TimeText(std::int64_t microseconds) {
  return QDateTime::fromMSecsSinceEpoch(microseconds / 1000, Qt::UTC).toString(Qt::ISODateWithMs).toStdString();
}

int Status(const RelayOptions& options) {
  const std::optional<relay::CopyNote> note = relay::NoteOf(DatabasePath(options.database));
  if (!note) throw Failure(kExitFaults, options.database.Text() + " is no copy");
  const double age = static_cast<double>(std::max<std::int64_t>(0, relay::Now() - note->asOf)) / 1e6;
  if (options.format == Format::kJson) {
    const RelayLog::Json object = {{"source", note->source},        {"epoch", fmt::format("{:016x}", note->epoch)},
                                   {"number", note->number},        {"changed", TimeText(note->changed)},
                                   {"as_of", TimeText(note->asOf)}, {"age", age}};
    WriteUtf8(object.dump(2, ' ', false, RelayLog::Json::error_handler_t::replace) + "\n");
    return kExitGood;
  }
  WriteResult(Format::kText,
              fmt::format("A copy of {}, commit {} of epoch {:016x}.\nLast changed {}; known to be current at {}, "
                          "{:.1f} seconds ago.\n",
                          OneLine(note->source), note->number, note->epoch, TimeText(note->changed),
                          TimeText(note->asOf), age));
  return kExitGood;
}

int Release(const RelayOptions& options) {
  if (!relay::ReleaseCopy(DatabasePath(options.database))) {
    throw Failure(kExitFaults, options.database.Text() + " is no copy");
  }
  WriteResult(Format::kText, options.database.Text() + " is a database of its own now.\n");
  return kExitGood;
}

void AddServerOptions(CommandLine& command, RelayOptions& options) {
  command.Add("--name", options.name, "The name that the database is published under (default: that of its file)")
      .Shown("NAME");
  AddPathOption(command, "--creds", options.server.credentials, "A file of NATS credentials");
  AddPathOption(command, "--tls-ca", options.server.authority, "Certificates of those who sign the server's, PEM");
  AddPathOption(command, "--tls-cert", options.server.certificate, "The program's own certificate, PEM");
  AddPathOption(command, "--tls-key", options.server.key, "Its key, PEM");
  command.AddChoice(
      "--format",
      [&options](const std::string& name) { options.format = name == "json" ? Format::kJson : Format::kText; },
      {"text", "json"}, "text for people (default), json for programs: an object a line, in UTF-8");
}

void DescribePublish(CommandLine& command, RelayOptions& options) {
  AddModelArgument(command, options.database, "MODEL", "The realtime database, rtdb:NAME").Required();
  command.Add("--to", options.server.urls, "The server, nats://HOST[:PORT]; several parted by commas")
      .Shown("URL")
      .Required();
  command.Add("--interval", options.interval, "Look for commits each MS milliseconds (default 10)")
      .Shown("MS")
      .Within(1, 60000);
  command.Add("--keep", options.keep, "The stream keeps MB megabytes of commits (default 1024)")
      .Shown("MB")
      .Within(4, 1 << 20);
  command.AddFlag("--once", options.once, "Send what has changed and end");
  AddServerOptions(command, options);
  command.Footer(kPublishFooter);
  AddExitCodes(command, "it was stopped");
}

void DescribeFollow(CommandLine& command, RelayOptions& options) {
  command.Add("URL", options.server.urls, "The server, nats://HOST[:PORT]; several parted by commas")
      .Shown(" ")
      .Required();
  AddModelArgument(command, options.database, "COPY", "The realtime database that becomes the copy, rtdb:NAME")
      .Required();
  command.AddFlag("--once", options.once, "Catch up and end");
  AddServerOptions(command, options);
  command.Footer(kFollowFooter);
  AddExitCodes(command, "it was stopped");
}

}  // namespace

void AddRelay(CommandLine& app, Action& action) {
  CommandLine relay = app.AddSubcommand("relay", "Keep copies of a realtime database on other machines", {});
  relay.RequireSubcommand();
  relay.Footer("'dtsdb relay COMMAND --help' prints more about a command.");
  AddCommand<RelayOptions>(relay, action, "publish", "Send the commits of a database to a NATS server", DescribePublish,
                           Publish);
  AddCommand<RelayOptions>(relay, action, "follow", "Keep a copy of a published database", DescribeFollow, Follow);
  AddCommand<RelayOptions>(
      relay, action, "status", "Show how old a copy is",
      [](CommandLine& command, RelayOptions& options) {
        AddModelArgument(command, options.database, "COPY", "The copy, rtdb:NAME").Required();
        AddFormatOption(command, options.format);
        command.Footer(kStatusFooter);
        AddExitCodes(command, "it is a copy", "it is no copy");
      },
      Status);
  AddCommand<RelayOptions>(
      relay, action, "release", "Make a copy a database of its own",
      [](CommandLine& command, RelayOptions& options) {
        AddModelArgument(command, options.database, "COPY", "The copy, rtdb:NAME").Required();
        command.Footer(kReleaseFooter);
        AddExitCodes(command, "it is one now", "it was no copy");
      },
      Release);
}

}  // namespace dtsdb::tools
