// What dtsdb run notifies the service manager of that has started it.

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>

#include "tests/command/running_task.h"

namespace dtsdb::tools {
namespace {

using test::RunningTask;

/// The socket of a service manager.
class ManagerSocket {
 public:
  explicit ManagerSocket(const std::filesystem::path& path) : m_path(path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof(address.sun_path) - 1);
    EXPECT_EQ(::bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0) << path;
  }
  ManagerSocket(const ManagerSocket&) = delete;
  ManagerSocket& operator=(const ManagerSocket&) = delete;
  ~ManagerSocket() { ::close(m_socket); }

  /// The variable by which a service finds it.
  QStringList Variable() const { return {QStringLiteral("NOTIFY_SOCKET"), QString::fromStdString(m_path.string())}; }
  /// The next message; empty when none comes for `milliseconds`.
  std::string Next(int milliseconds = 30000) const {
    pollfd waiting{m_socket, POLLIN, 0};
    if (::poll(&waiting, 1, milliseconds) != 1) return "";
    char bytes[256];
    const auto length = ::recv(m_socket, bytes, sizeof(bytes), 0);
    return length < 0 ? "" : std::string(bytes, static_cast<std::size_t>(length));
  }

 private:
  std::filesystem::path m_path;
  int m_socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

class RunUnderManager : public test::RunPlace {
 protected:
  ManagerSocket manager{here / "manager"};
};

TEST_F(RunUnderManager, StartSignsOfLifeAndEndAreNotified) {
  Store();
  RunningTask task(here, {}, manager.Variable());
  EXPECT_EQ(manager.Next(), "READY=1");
  EXPECT_TRUE(task.Line().starts_with("start: ")) << "it is ready once its topology is stored";
  EXPECT_EQ(manager.Next(), "WATCHDOG=1");
  EXPECT_EQ(manager.Next(), "WATCHDOG=1");
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
  std::string last;
  for (std::string next = manager.Next(0); !next.empty(); next = manager.Next(0)) last = next;
  EXPECT_EQ(last, "STOPPING=1");
}

TEST_F(RunUnderManager, WatchdogIsFedWhileTheTaskWaits) {
  Store();
  const QStringList watchdog{QStringLiteral("WATCHDOG_USEC"), QStringLiteral("100000")};
  RunningTask task(here, {QStringLiteral("--interval"), QStringLiteral("3600000")}, manager.Variable() + watchdog);
  EXPECT_EQ(manager.Next(), "READY=1");
  for (int i = 0; i < 3; ++i) EXPECT_EQ(manager.Next(), "WATCHDOG=1");
  task.Signal(SIGTERM);
  EXPECT_EQ(task.End(), 0);
}

TEST_F(RunUnderManager, TaskWithoutGoodModelIsNeverReady) {
  EXPECT_EQ(here.Run("convert m rtdb:x").code, 0);
  RunningTask task(here, {}, manager.Variable());
  EXPECT_EQ(task.End(), 1);
  EXPECT_EQ(manager.Next(0), "");
}

}  // namespace
}  // namespace dtsdb::tools
