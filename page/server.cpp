#include "page/server.h"

#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <thread>
#include <utility>

#include "page/bounded_stream.h"
#include "page/connection_queue.h"
#include "page/internal/http.h"

namespace dtsdb::page {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// The longest that a thread waits before it looks whether the server ends.
constexpr milliseconds kServerStep{100};
/// So long the first request of a connection may take to come, whoever waits.
constexpr milliseconds kFirstGrace{1'000};
/// The head of a request, beside its body.
constexpr std::size_t kHeadOfRequest = std::size_t{64} * 1024;

PageRequest RequestOf(const httplib::Request& request) {
  PageRequest page;
  page.method = request.method == "HEAD" ? "GET" : request.method;
  page.path = request.path;
  for (const auto& [name, value] : request.params) page.parameters.emplace(name, value);
  if (request.get_header_value_count("Host") == 1) page.host = request.get_header_value("Host");
  page.origin = request.get_header_value("Origin");
  page.body = request.body;
  return page;
}

bool HasBody(const httplib::Request& request) {
  return request.has_header("Content-Length") || request.has_header("Transfer-Encoding");
}

/// Keeps the library to what the server is meant to do: no ranges, and of the encodings the quick one.
void Simplify(httplib::Request& request, bool closes) {
  const bool takesGzip = request.get_header_value("Accept-Encoding").find("gzip") != std::string::npos;
  for (const char* name : {"Range", "If-Range", "Accept-Encoding"}) request.headers.erase(name);
  request.ranges.clear();
  if (takesGzip) request.set_header("Accept-Encoding", "gzip");
  if (!closes) return;
  request.headers.erase("Connection");
  request.set_header("Connection", "close");
}

/// The next piece of an event stream. False ends the connection.
bool SendNext(EventStream& stream, httplib::DataSink& sink, milliseconds keepAlive, steady_clock::time_point& sent) {
  const EventText event = stream.Take(5 * kServerStep);
  if (!event && stream.HasEnded()) {
    sink.done();
    return true;
  }
  if (!sink.is_writable()) return false;
  const std::string sign = ": still here\n\n";
  if (!event && steady_clock::now() - sent < keepAlive) return true;
  sent = steady_clock::now();
  const std::string& text = event ? *event : sign;
  return sink.write(text.data(), text.size());
}

}  // namespace

/// The library's server with connections that are bounded in every way.
class Server::Listener : public httplib::Server {
 public:
  Listener(Site& site, EventHub& hub, const ServerLimits& limits) : m_site(site), m_hub(hub), m_limits(limits) {
    httplib::Headers headers;
    for (const auto& [name, value] : site.Headers()) headers.emplace(name, value);
    set_default_headers(headers);
    set_payload_max_length(site.Limits().body);
    set_tcp_nodelay(true);
    // The library's own choice lets two programs listen on one port.
    set_socket_options([](socket_t socket) {
      const int yes = 1;
      ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof(yes));
    });
    set_exception_handler(
        [](const httplib::Request&, httplib::Response& response, const std::exception_ptr&) { response.status = 500; });
    new_task_queue = [this] {
      return new ConnectionQueue(m_limits.viewers + m_limits.workers, m_limits.waiting, m_waiting);
    };
    AddRoutes();
  }

  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  ~Listener() override {
    m_ends = true;
    m_hub.End();
    WaitUntilRunning();
    if (is_running()) stop();
    if (m_thread.joinable()) m_thread.join();
  }

  bool Begin(const std::string& address, int port) {
    m_port = port == 0 ? bind_to_any_port(address) : port;
    if (m_port <= 0 || (port != 0 && !bind_to_port(address, port))) return false;
    m_hasEnded = false;
    m_thread = std::thread([this, address] { Listen(address); });
    WaitUntilRunning();
    return true;
  }

  int Port() const { return m_port; }

 private:
  void AddRoutes() {
    // The body of a request is read only when this leaves it to the route.
    set_pre_routing_handler([this](const httplib::Request& request, httplib::Response& response) {
      const PageRequest page = RequestOf(request);
      if (m_site.TakesBody(page)) return HandlerResponse::Unhandled;
      Answer(m_site.AnswerTo(page), response);
      return HandlerResponse::Handled;
    });
    Post("/[^/]+/api/whatif", [this](const httplib::Request& request, httplib::Response& response) {
      Answer(m_site.AnswerTo(RequestOf(request)), response);
    });
  }

  /// The library gives up when a connection fails before it is accepted.
  void Listen(const std::string& address) {
    listen_after_bind();
    while (!m_ends) {
      if (bind_to_port(address, m_port)) listen_after_bind();
      std::this_thread::sleep_for(kServerStep);
    }
    m_hasEnded = true;
  }

  void WaitUntilRunning() const {
    while (!is_running() && !m_hasEnded) std::this_thread::sleep_for(milliseconds(1));
  }

  void Answer(PageAnswer answer, httplib::Response& response) {
    if (answer.isEventStream) return Stream(response);
    response.status = answer.status;
    for (const auto& [name, value] : answer.headers) response.set_header(name, value);
    response.set_content(std::move(answer.body), answer.type.c_str());
  }

  void Stream(httplib::Response& response) {
    const std::shared_ptr<EventStream> stream = m_hub.Open();
    if (!stream) {
      response.status = 503;
      response.set_content(R"({"error":"as many viewers as may follow the events do so already"})", "application/json");
      return;
    }
    response.set_chunked_content_provider(
        "text/event-stream", [this, stream, sent = steady_clock::now()](std::size_t, httplib::DataSink& sink) mutable {
          return SendNext(*stream, sink, m_limits.keepAlive, sent);
        });
  }

  bool process_and_close_socket(socket_t socket) override {
    if (ConnectionQueue::IsRefusing()) {
      const std::string_view text =
          "HTTP/1.1 503 Service Unavailable\r\nContent-Length: 0\r\nConnection: close\r\n\r\n";
      ::send(socket, text.data(), text.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
    } else {
      Serve(socket);
    }
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return true;
  }

  void Serve(int socket) {
    StreamLimits limits;
    limits.request = m_limits.request;
    limits.write = m_limits.write;
    limits.request_bytes = m_site.Limits().body + kHeadOfRequest;
    BoundedStream stream(socket, limits, m_ends);
    for (milliseconds grace = kFirstGrace; WaitForRequest(stream, grace); grace = milliseconds(0)) {
      bool closes = m_ends;
      bool closed = false;
      stream.BeginRequest();
      const auto simplify = [&closes](httplib::Request& request) {
        closes = closes || HasBody(request);  // what of it was left unread is no request
        Simplify(request, closes);
      };
      if (!process_request(stream, closes, closed, simplify) || closed || closes) break;
    }
  }

  /// A connection without a request makes room for those that wait for a thread.
  bool WaitForRequest(BoundedStream& stream, milliseconds grace) {
    const auto begin = steady_clock::now();
    for (auto now = begin; !m_ends && now - begin < m_limits.idle; now = steady_clock::now()) {
      if (stream.WaitForRequest(kServerStep)) return true;
      if (m_waiting > 0 && now - begin >= grace) return false;
    }
    return false;
  }

  Site& m_site;
  EventHub& m_hub;
  ServerLimits m_limits;
  std::atomic<std::size_t> m_waiting = 0;
  std::atomic<bool> m_ends = false;
  std::atomic<bool> m_hasEnded = true;  // the thread that listens
  int m_port = 0;
  std::thread m_thread;
};

Server::Server(std::unique_ptr<Listener> listener) : m_listener(std::move(listener)) {}
Server::~Server() = default;

analysis::Result<std::unique_ptr<Server>> Server::Open(Site& site, EventHub& hub, const std::string& address, int port,
                                                       const ServerLimits& limits) {
  auto listener = std::make_unique<Listener>(site, hub, limits);
  if (listener->Begin(address, port)) return std::unique_ptr<Server>(new Server(std::move(listener)));
  const std::string place = HostAndPort(address, port);
  return tl::unexpected(analysis::Error{
      analysis::ErrorCode::kFile,
      place +
          ": can't listen there: another program does, or this machine has no such address; --port 0 picks a free port",
      place});
}

int Server::Port() const { return m_listener->Port(); }

}  // namespace dtsdb::page
