// The command dtsdb serve: its one line, its end, its refusals, and commits of other processes.
#include <gtest/gtest.h>
#include <QRegularExpression>
#include <csignal>
#include <nlohmann/json.hpp>
#include <thread>

#include "page/internal/http.h"
#include "tests/support/command_runner.h"

namespace dtsdb::tools::test {
namespace {

/// dtsdb serve in a process of its own; killed when this goes.
class RunningServer {
 public:
  RunningServer(const Workplace& here, const QString& model, const QStringList& options = {}) {
    m_process.setWorkingDirectory(QString::fromStdString(here.Path().string()));
    m_process.start(
        QString::fromUtf8(dtsdb::test::TestProgram()),
        QStringList{QStringLiteral("serve"), model, QStringLiteral("--port"), QStringLiteral("0")} + options);
    while (!m_process.canReadLine() && m_process.waitForReadyRead(60000)) {
    }
    m_line = m_process.readLine().toStdString();
    static const QRegularExpression address(QStringLiteral("^http://127\\.0\\.0\\.1:(\\d+)(/[0-9a-zA-Z_-]+/)\n$"));
    const auto match = address.match(QString::fromStdString(m_line));
    m_port = match.captured(1).toInt();
    m_path = match.captured(2).toStdString();
  }
  RunningServer(const RunningServer&) = delete;
  RunningServer& operator=(const RunningServer&) = delete;
  ~RunningServer() {
    m_process.kill();
    m_process.waitForFinished();
  }

  const std::string& Line() const { return m_line; }
  int Port() const { return m_port; }
  std::string Path(const std::string& path) const { return m_path + path; }
  std::string Get(const std::string& path) const {
    httplib::Client client("127.0.0.1", m_port);
    client.set_read_timeout(60);
    const auto answer = client.Get(Path(path));
    return answer ? answer->body : "no answer";
  }
  /// The exit code once it has got the signal, -1 when it doesn't end.
  int End(int signal) {
    const auto number = static_cast<pid_t>(m_process.processId());
    if (number <= 0 || ::kill(number, signal) != 0) return -1;
    m_process.waitForFinished(30000);
    const bool ended = m_process.state() == QProcess::NotRunning && m_process.exitStatus() == QProcess::NormalExit;
    return ended ? m_process.exitCode() : -1;
  }
  std::string Messages() { return m_process.readAllStandardError().toStdString(); }

 private:
  QProcess m_process;
  std::string m_line;
  int m_port = 0;
  std::string m_path;
};

TEST(ServeCommand, PrintsOneLineAndEndsWithTheSignal) {
  const Workplace here;
  here.CopyModel("m");
  for (const int signal : {SIGTERM, SIGINT}) {
    RunningServer server(here, QStringLiteral("m"));
    EXPECT_GT(server.Port(), 0) << server.Line();
    EXPECT_TRUE(Contains(server.Get("api/model"), "\"live\":false"));
    EXPECT_TRUE(Contains(server.Get(""), "page.js"));
    EXPECT_EQ(server.End(signal), 0);
    EXPECT_EQ(server.Messages(), "");
  }
}

TEST(ServeCommand, CommitOfAnotherProcessReachesTheViewer) {
  const Workplace here;
  here.CopyModel("m");
  ASSERT_EQ(here.Run("topology m -o rtdb:x").code, 0);
  RunningServer server(here, QStringLiteral("rtdb:x"));
  std::string seen;
  std::atomic<bool> hasGreeting = false;
  std::thread viewer([&] {
    httplib::Client client("127.0.0.1", server.Port());
    client.set_read_timeout(60);
    client.Get(server.Path("api/events"), [&](const char* bytes, std::size_t size) {
      seen.append(bytes, size);
      hasGreeting = Contains(seen, "event: hello");
      return !Contains(seen, "event: commit");
    });
    hasGreeting = true;
  });
  while (!hasGreeting) std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_EQ(here.Run("rtdb put x LD id=乙荷 p=130.5").code, 0);
  viewer.join();
  EXPECT_TRUE(Contains(seen, "{\"table\":\"LD\",\"id\":\"乙荷\",\"text\":\"p ")) << seen;
  EXPECT_TRUE(Contains(server.Get("api/state"), "\"version\":2"));
  EXPECT_EQ(server.End(SIGTERM), 0);
}

TEST(ServeCommand, TokenIsTakenAsItIs) {
  const Workplace here;
  here.CopyModel("m");
  RunningServer server(here, QStringLiteral("m"),
                       {QStringLiteral("--listen"), QStringLiteral("127.0.0.1"), QStringLiteral("--token"),
                        QStringLiteral("0123456789-token")});
  EXPECT_TRUE(Contains(server.Line(), "/0123456789-token/\n")) << server.Line();
  EXPECT_TRUE(Contains(server.Get("api/model"), "\"format\":1"));
}

TEST(ServeCommand, ListeningElsewhereNeedsAToken) {
  const Workplace here;
  here.CopyModel("m");
  const CommandResult open = here.Run("serve m --listen 0.0.0.0 --port 0");
  EXPECT_EQ(open.code, 2);
  EXPECT_EQ(open.err, "dtsdb: --listen needs --token: whoever knows the address may look at the model\n");
  const CommandResult weak = here.Run("serve m --listen 0.0.0.0 --token abc --port 0");
  EXPECT_EQ(weak.code, 2);
  EXPECT_EQ(weak.err, "dtsdb: --token: a token has 16 to 128 characters\n");
}

TEST(ServeCommand, TakenPortEndsWithOneLine) {
  const Workplace here;
  here.CopyModel("m");
  const RunningServer first(here, QStringLiteral("m"));
  const CommandResult second = here.Run(("serve m --port " + std::to_string(first.Port())).c_str());
  EXPECT_EQ(second.code, 3);
  EXPECT_TRUE(IsOneLine(second.err)) << second.err;
  EXPECT_TRUE(Contains(second.err, "can't listen")) << second.err;
  EXPECT_EQ(second.out, "");
}

TEST(ServeCommand, MissingDatabaseEndsWithOneLine) {
  const Workplace here;
  const CommandResult result = here.Run("serve rtdb:nothing --port 0");
  EXPECT_EQ(result.code, 3);
  EXPECT_TRUE(IsOneLine(result.err)) << result.err;
  EXPECT_FALSE(here.Exists("nothing.fdb"));
}

}  // namespace
}  // namespace dtsdb::tools::test
