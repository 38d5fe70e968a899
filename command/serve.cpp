#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <ctime>
#include <memory>
#include <string>

#include "command/analysis_result.h"
#include "command/commands.h"
#include "command/finding_report.h"
#include "command/imported_model.h"
#include "command/page_subject.h"
#include "command/render.h"
#include "formats/failure.h"
#include "page/access.h"
#include "page/event_hub.h"
#include "page/live_model.h"
#include "page/server.h"
#include "page/site.h"

namespace dtsdb::tools {
namespace {

constexpr const char* kThisMachine = "127.0.0.1";

struct ServeOptions {
  ModelName model;
  int port = 8017;
  std::string listen;
  std::string token;
  int interval = 50;
  Language language = LocaleLanguage();
};

constexpr const char* kServeFooter =
    "Prints the address of the page in one line and serves it until Ctrl-C or SIGTERM. Only who has the address, with\n"
    "the token in it, gets an answer. A realtime database is read and never written: what is tried out on the page "
    "goes "
    "into\n"
    "a copy of the viewer's own.\n\n"
    "Examples:\n"
    "  dtsdb serve examples/ieee14\n"
    "  dtsdb serve rtdb:grid --port 0\n"
    "  dtsdb serve rtdb:grid --listen 10.1.2.3 --token $(openssl rand -hex 16)";

/// SIGINT and SIGTERM, which wait from now on in this thread and in those that it starts.
class EndSignals {
 public:
  EndSignals() {
    ::sigemptyset(&m_signals);
    for (const int signal : {SIGTERM, SIGINT}) ::sigaddset(&m_signals, signal);
    ::sigprocmask(SIG_BLOCK, &m_signals, nullptr);
  }

  /// Waits for so many milliseconds. True when one has come.
  bool Wait(int milliseconds) {
    timespec time{};
    time.tv_sec = milliseconds / 1000;
    time.tv_nsec = (milliseconds % 1000) * 1000000L;
    return ::sigtimedwait(&m_signals, nullptr, &time) != -1;
  }

 private:
  sigset_t m_signals{};
};

/// Tables and copies come and go by tens of megabytes, on many threads: what is given back goes back to the system.
void ReturnMemory() {
  constexpr int kLargeBlock = 128 * 1024;
  ::mallopt(M_MMAP_THRESHOLD, kLargeBlock);
  ::mallopt(M_ARENA_MAX, 2);
}

/// Looks for commits until the end. At most half of the time goes into reading them.
void Follow(page::LiveModel& live, EndSignals& end, int interval) {
  for (int pause = interval; !end.Wait(pause);) {
    const auto begin = std::chrono::steady_clock::now();
    live.Look();
    const auto taken = std::chrono::steady_clock::now() - begin;
    const auto milliseconds = std::chrono::ceil<std::chrono::milliseconds>(taken).count();
    pause = std::max(interval, static_cast<int>(milliseconds));
  }
}

std::unique_ptr<page::LiveModel> OpenLive(const ServeOptions& options, page::EventHub& hub) {
  const ModelName& name = options.model;
  page::Subject subject = PageSubject(name, options.language);
  subject.live = name.IsDatabase();
  subject.language = options.language;
  if (!name.IsDatabase()) return Take(page::LiveModel::Show(OpenModel(name), subject));
  return Take(page::LiveModel::Follow(name.Path(), subject, hub));
}

int Serve(const ServeOptions& options) {
  if (!options.listen.empty() && options.token.empty()) {
    throw Failure(kExitUsage, "--listen needs --token: whoever knows the address may look at the model");
  }
  if (const std::string why = options.token.empty() ? "" : page::WhyNoToken(options.token); !why.empty()) {
    throw Failure(kExitUsage, "--token: " + why);
  }
  ReturnMemory();
  EndSignals end;
  const std::string address = options.listen.empty() ? kThisMachine : options.listen;
  const page::Access access(options.token.empty() ? page::RandomToken() : options.token, address);
  const page::SiteLimits limits;
  const page::ServerLimits serverLimits;
  page::EventHub hub(serverLimits.viewers);
  const std::unique_ptr<page::LiveModel> live = OpenLive(options, hub);
  page::Site site(*live, access, limits);
  const auto server = Take(page::Server::Open(site, hub, address, options.port, serverLimits));
  WriteUtf8("http://" + page::HostAndPort(address, server->Port()) + "/" + access.Token() + "/\n");
  Follow(*live, end, options.interval);
  return kExitGood;
}

}  // namespace

void AddServe(CommandLine& app, Action& action) {
  AddCommand<ServeOptions>(
      app, action, "serve", "Show a model as a page that follows it, and try switching out",
      [](CommandLine& command, ServeOptions& options) {
        AddModelArgument(command, options.model).Required();
        AddImportOptions(command, options.model);
        command.Add("--port", options.port, "Listen on port N (default 8017); 0 picks a free one")
            .Shown("N")
            .Within(0, 65535);
        command.Add("--listen", options.listen, "Listen on ADDRESS and not on this machine alone; needs --token")
            .Shown("ADDRESS");
        command.Add("--token", options.token, "The word in the address that admits viewers, in place of a random one")
            .Shown("TOKEN");
        command.Add("--interval", options.interval, "Look for commits each MS milliseconds (default 50)")
            .Shown("MS")
            .Within(10, 10000);
        AddLanguageOption(command, options.language);
        command.Footer(kServeFooter);
        AddExitCodes(command, "it was stopped");
      },
      Serve);
}

}  // namespace dtsdb::tools
