/// \file
/// A NATS server beside a test, and other programs that run beside it.
#pragma once

#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <chrono>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>

#include "tests/support/bytes.h"

namespace dtsdb::test {

inline sockaddr_in LocalAddress(int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  return address;
}

/// A port that nobody listens on.
inline int FreePort() {
  const int listener = ::socket(AF_INET, SOCK_STREAM, 0);
  sockaddr_in address = LocalAddress(0);
  socklen_t size = sizeof(address);
  auto* const general = reinterpret_cast<sockaddr*>(&address);
  ::bind(listener, general, size);
  ::getsockname(listener, general, &size);
  ::close(listener);
  return ntohs(address.sin_port);
}

inline bool IsListenedOn(int port) {
  const int client = ::socket(AF_INET, SOCK_STREAM, 0);
  const sockaddr_in address = LocalAddress(port);
  const bool isConnected = ::connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  ::close(client);
  return isConnected;
}

/// A program that runs beside the test, and ends with it in any case.
class Service {
 public:
  Service(QString program, QStringList arguments) : m_program(std::move(program)), m_arguments(std::move(arguments)) {}
  ~Service() { Kill(); }
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  void Start() {
    Kill();
    m_process = std::make_unique<QProcess>();
    m_process->setStandardOutputFile(QProcess::nullDevice());
    m_process->setStandardErrorFile(QProcess::nullDevice());
    m_process->start(m_program, m_arguments);
    m_process->waitForStarted(10000);
  }
  bool IsRunning() const { return m_process && m_process->state() == QProcess::Running; }
  void Kill() {
    if (!m_process) return;
    m_process->kill();
    m_process->waitForFinished(30000);
    m_process.reset();
  }
  /// Ends it as an operator does.
  void Stop() {
    if (!m_process) return;
    m_process->terminate();
    if (!m_process->waitForFinished(30000)) ADD_FAILURE() << m_arguments.join(QLatin1Char(' ')).toStdString();
    m_process.reset();
  }
  void Signal(int signal) const {
    if (IsRunning()) ::kill(static_cast<pid_t>(m_process->processId()), signal);
  }

 private:
  QString m_program;
  QStringList m_arguments;
  std::unique_ptr<QProcess> m_process;
};

/// A NATS server with JetStream on this machine, in a folder of its own.
class NatsBroker {
 public:
  /// `settings` are lines of its configuration file.
  explicit NatsBroker(const std::string& settings = "") { Configure(settings); }

  /// For the next start.
  void Configure(const std::string& settings) const {
    WriteBytes(
        m_folder.filePath(QStringLiteral("server.conf")).toStdString(),
        "listen: " + Place() + "\njetstream { store_dir: \"" + m_folder.path().toStdString() + "\" }\n" + settings);
  }
  /// Starts it anew, and waits until it listens. Throws when it doesn't.
  void Start() {
    m_service.Start();
    for (int i = 0; i < 1000 && !IsListenedOn(m_port); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    if (!IsListenedOn(m_port)) throw std::runtime_error("nats-server doesn't start");
  }
  Service& Program() { return m_service; }
  /// HOST:PORT
  std::string Place() const { return "127.0.0.1:" + std::to_string(m_port); }
  std::string Url() const { return "nats://" + Place(); }
  int Port() const { return m_port; }

 private:
  QTemporaryDir m_folder{QStringLiteral("/tmp/nats-broker-XXXXXX")};
  int m_port = FreePort();
  Service m_service{QStringLiteral("nats-server"),
                    {QStringLiteral("-c"), m_folder.filePath(QStringLiteral("server.conf"))}};
};

}  // namespace dtsdb::test
