/// \file
/// A connection with a NATS server, and what came over it for those who listen. Only the two files that speak to a
/// server include this one.
#pragma once

#include <nats/nats.h>

#include <cstdint>
#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "relay/nats_server.h"

namespace dtsdb::relay {

template <auto Destroy>
struct NatsDestroyer {
  template <class T>
  void operator()(T* object) const {
    Destroy(object);
  }
};
using NatsMessage = std::unique_ptr<natsMsg, NatsDestroyer<natsMsg_Destroy>>;

/// How long an answer is waited for, in milliseconds.
inline constexpr int kNatsRequestWait = 3000;

std::string BytesOf(natsMsg* message);

/// Looks for its server by itself when that goes away, as long as it exists. Belongs to one thread.
class NatsConnection {
 public:
  /// Connects, and listens to all subjects that begin with `live`. Throws StreamError, kRefused where waiting doesn't
  /// help, and std::invalid_argument for URLs that are none.
  NatsConnection(NatsServer server, std::string live);
  NatsConnection(const NatsConnection&) = delete;
  NatsConnection& operator=(const NatsConnection&) = delete;
  ~NatsConnection() = default;

  const std::string& Live() const { return m_live; }
  /// For requests. Throws StreamError while the server refuses a connection that it had granted.
  jsCtx* Js();
  /// Sends bytes that nobody keeps, under the subject `live`pulse. Throws StreamError.
  void SendPulse(std::string_view bytes);
  /// The most bytes of a message with its headers.
  std::int64_t MaxPayload();
  /// Throws StreamError unless the status is good. `what` is what it was about, `code` the server's reason where it
  /// gave one.
  void Check(natsStatus status, const std::string& what, jsErrCode code = static_cast<jsErrCode>(0)) const;

  /// Waits so many milliseconds until something comes, unless something has.
  void Wait(std::int64_t longest);
  /// The kept message of that number, if it came live. Those in front of it are forgotten.
  std::optional<std::string> TakeLive(std::uint64_t number);
  /// The newest pulse that came since the last call, if one did.
  std::optional<std::string> TakePulse() { return std::exchange(m_pulse, std::nullopt); }

 private:
  void Connect();
  void Stand();
  void Listen(std::int64_t longest);
  void Take(const NatsMessage& message);

  NatsServer m_server;
  ServerUrls m_urls;
  std::string m_live;
  std::unique_ptr<natsConnection, NatsDestroyer<natsConnection_Destroy>> m_connection;
  std::unique_ptr<jsCtx, NatsDestroyer<jsCtx_Destroy>> m_context;
  std::unique_ptr<natsSubscription, NatsDestroyer<natsSubscription_Destroy>> m_subscription;
  std::deque<std::pair<std::uint64_t, std::string>> m_messages;
  std::optional<std::string> m_pulse;
};

}  // namespace dtsdb::relay
