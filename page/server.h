/// \file
/// The small server of the page.
#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <string>

#include "analysis/error.h"
#include "page/event_hub.h"
#include "page/site.h"

namespace dtsdb::page {

/// How many a server serves, and how long it waits for them. docs/serve.md gives the reasons.
struct ServerLimits {
  std::size_t viewers = 32;                     ///< that follow the events, each on a thread
  std::size_t workers = 8;                      ///< further threads, for all other requests
  std::size_t waiting = 64;                     ///< connections that wait for a thread; more are refused
  std::chrono::milliseconds request{10'000};    ///< a request has to be read
  std::chrono::milliseconds write{5'000};       ///< a write has to be taken
  std::chrono::milliseconds idle{5'000};        ///< a connection waits for the next request
  std::chrono::milliseconds keepAlive{15'000};  ///< between two signs of life where nothing happens
};

/// Serves a site over HTTP, on threads of its own, until it is destroyed.
class Server {
 public:
  /// Listens on `address` and `port`; port 0 picks a free one. An Error when that can't be done. Site and hub must
  /// outlive the server, which ends the hub's streams before it ends.
  static analysis::Result<std::unique_ptr<Server>> Open(Site& site, EventHub& hub, const std::string& address, int port,
                                                        const ServerLimits& limits = {});
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server();

  /// The port that it listens on.
  int Port() const;

 private:
  class Listener;
  explicit Server(std::unique_ptr<Listener> listener);

  std::unique_ptr<Listener> m_listener;
};

}  // namespace dtsdb::page
