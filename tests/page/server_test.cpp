// The server on real sockets: events as they happen, viewers that stall, requests beyond all bounds, its end.
#include "page/server.h"

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <atomic>
#include <thread>

#include "page/internal/http.h"
#include "tests/page/live_place.h"

namespace dtsdb::page::test {
namespace {

using Json = nlohmann::json;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char* kWord = "0123456789abcdef";

/// A connection that sends bytes as they are given.
class RawClient {
 public:
  /// `room` bytes for what arrives; 0 leaves the system its choice.
  explicit RawClient(int port, int room = 0) : m_socket(::socket(AF_INET, SOCK_STREAM, 0)) {
    if (room > 0) ::setsockopt(m_socket, SOL_SOCKET, SO_RCVBUF, &room, sizeof(room));
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    EXPECT_EQ(::connect(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)), 0);
  }
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;
  ~RawClient() { ::close(m_socket); }

  void Send(const std::string& text) const { ::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL); }

  /// What arrives until `part` is there, or the other side ends, or nothing comes for so long.
  std::string ReadUntil(const std::string& part, milliseconds longest = milliseconds(20000)) {
    std::string text;
    char bytes[4096];
    while (text.find(part) == std::string::npos) {
      pollfd poll{m_socket, POLLIN, 0};
      if (::poll(&poll, 1, static_cast<int>(longest.count())) <= 0) return text;
      const ssize_t n = ::recv(m_socket, bytes, sizeof(bytes), 0);
      if (n <= 0) {
        m_hasEnded = true;
        return text;
      }
      text.append(bytes, static_cast<std::size_t>(n));
    }
    return text;
  }
  /// True once the other side has ended the connection, for which it is waited.
  bool HasEnded() {
    ReadUntil("what nobody sends");
    return m_hasEnded;
  }

 private:
  int m_socket;
  bool m_hasEnded = false;
};

std::string Head(const std::string& path) {
  return "GET /" + std::string(kWord) + path + " HTTP/1.1\r\nHost: 127.0.0.1\r\n";
}

class ServerTest : public LivePlace {
 protected:
  void SetUp() override {
    Store();
    Follow();
    site = std::make_unique<Site>(*live, Access(kWord, "127.0.0.1"));
  }

  void Open(const ServerLimits& limits = {}) {
    auto opened = Server::Open(*site, hub, "127.0.0.1", 0, limits);
    ASSERT_TRUE(opened.has_value()) << opened.error().message;
    server = std::move(*opened);
  }

  httplib::Client Client() const {
    httplib::Client client("127.0.0.1", server->Port());
    client.set_read_timeout(60);
    return client;
  }
  static std::string Path(const std::string& path) { return "/" + std::string(kWord) + path; }

  /// An event stream that has got its greeting.
  std::unique_ptr<RawClient> Watch(int room = 0) const {
    auto viewer = std::make_unique<RawClient>(server->Port(), room);
    viewer->Send(Head("/api/events") + "\r\n");
    EXPECT_NE(viewer->ReadUntil("event: hello").find("text/event-stream"), std::string::npos);
    return viewer;
  }

  std::unique_ptr<Site> site;
  std::unique_ptr<Server> server;
};

TEST_F(ServerTest, ServesThePageAndItsDocuments) {
  Open();
  httplib::Client client = Client();
  const auto page = client.Get(Path("/"));
  ASSERT_TRUE(page);
  EXPECT_EQ(page->status, 200);
  for (const auto& [header, value] : Site::Headers()) EXPECT_EQ(page->get_header_value(header), value) << header;
  const auto model = client.Get(Path("/api/model"));
  ASSERT_TRUE(model);
  EXPECT_EQ(Json::parse(model->body)["version"], 1);
  const auto table = client.Get(Path("/api/table?name=CB"));
  ASSERT_TRUE(table);
  EXPECT_EQ(Json::parse(table->body)["name"], "CB");
}

TEST_F(ServerTest, RefusalsHaveTheHeadersToo) {
  Open();
  httplib::Client client = Client();
  const auto nothing = client.Get("/");
  ASSERT_TRUE(nothing);
  EXPECT_EQ(nothing->status, 404);
  EXPECT_EQ(nothing->get_header_value("X-Content-Type-Options"), "nosniff");
  const auto foreign = client.Get(Path("/api/model"), {{"Host", "evil.example"}});
  ASSERT_TRUE(foreign);
  EXPECT_EQ(foreign->status, 403);
}

TEST_F(ServerTest, PacksWhatItSends) {
  Open();
  httplib::Client client = Client();
  client.set_decompress(false);
  const auto packed = client.Get(Path("/api/model"), {{"Accept-Encoding", "gzip, br"}});
  ASSERT_TRUE(packed);
  EXPECT_EQ(packed->get_header_value("Content-Encoding"), "gzip");
  const auto plain = client.Get(Path("/api/model"), {{"Accept-Encoding", "br"}});
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->get_header_value("Content-Encoding"), "");
  RawClient viewer(server->Port());
  viewer.Send(Head("/api/events") + "Accept-Encoding: gzip\r\n\r\n");
  EXPECT_NE(viewer.ReadUntil("event: hello").find("event: hello"), std::string::npos) << "events come as they are";
}

TEST_F(ServerTest, TakesListsOfEvents) {
  Open();
  httplib::Client client = Client();
  const Json event = {{"table", "CB"}, {"id", "B2"}, {"open", true}};
  const Json list = {{"viewer", "viewer0123456789"}, {"version", 1}, {"events", Json::array({event})}};
  const auto answer = client.Post(Path("/api/whatif"), list.dump(), "application/json");
  ASSERT_TRUE(answer);
  ASSERT_EQ(answer->status, 200) << answer->body;
  EXPECT_EQ(Json::parse(answer->body)["changes"]["becameDead"][0]["id"], "D2");
  const auto state = client.Get(Path("/api/state?viewer=viewer0123456789"));
  ASSERT_TRUE(state);
  EXPECT_EQ(Json::parse(state->body)["dead"][0]["id"], "D2");
}

TEST_F(ServerTest, CommitReachesAllViewers) {
  Open();
  const auto a = Watch();
  const auto b = Watch();
  Switch(1, false, "B2");
  live->Look();
  for (RawClient* viewer : {a.get(), b.get()}) {
    const std::string text = viewer->ReadUntil("\n\n");
    EXPECT_NE(text.find("event: commit\ndata: {\"version\":2,"), std::string::npos) << text;
    EXPECT_NE(text.find("\"id\":\"B2\",\"text\":\"opened\""), std::string::npos) << text;
  }
}

TEST_F(ServerTest, SilenceIsBrokenBySignsOfLife) {
  ServerLimits limits;
  limits.keepAlive = milliseconds(200);
  Open(limits);
  EXPECT_NE(Watch()->ReadUntil(": still here").find(": still here\n\n"), std::string::npos);
}

TEST_F(ServerTest, ViewerThatStallsSlowsNobodyAndIsDropped) {
  ServerLimits limits;
  limits.viewers = 2;
  limits.write = milliseconds(200);
  Open(limits);
  const auto stalled = Watch(4096);  // reads nothing from now on
  const auto other = Watch();
  const EventText large = MakeEvent("commit", "\"" + std::string(400'000, 'x') + "\"");
  for (int i = 0; i < 200 && hub.Open() == nullptr; ++i) {
    hub.Send(large, large);
    EXPECT_NE(other->ReadUntil("\n\n").find("event: commit"), std::string::npos);
    std::this_thread::sleep_for(milliseconds(10));
  }
  EXPECT_NE(hub.Open(), nullptr) << "the place of the one that stalled is free";
}

TEST_F(ServerTest, OneViewerMoreThanAllowedIsRefused) {
  ServerLimits limits;
  hub.Open();
  Open(limits);
  stream.reset();
  std::vector<std::unique_ptr<RawClient>> viewers;
  for (int i = 0; i < 4; ++i) viewers.push_back(Watch());
  RawClient another(server->Port());
  another.Send(Head("/api/events") + "\r\n");
  EXPECT_TRUE(another.ReadUntil("}").starts_with("HTTP/1.1 503 "));
  EXPECT_TRUE(Client().Get(Path("/api/model"))) << "documents are there for all";
}

TEST_F(ServerTest, RequestThatComesTooSlowlyIsDropped) {
  ServerLimits limits;
  limits.request = milliseconds(300);
  Open(limits);
  RawClient slow(server->Port());
  slow.Send(Head("/api/model"));
  const auto begin = steady_clock::now();
  std::atomic<bool> ended = false;
  std::thread dripping([&] {
    while (!ended) {
      slow.Send("X");
      std::this_thread::sleep_for(milliseconds(20));
    }
  });
  EXPECT_TRUE(slow.HasEnded());
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(20));
  ended = true;
  dripping.join();
  EXPECT_TRUE(Client().Get(Path("/api/model")));
}

TEST_F(ServerTest, ThreadsThatAreHeldAreGivenBack) {
  ServerLimits limits;
  limits.viewers = 1;
  limits.workers = 1;
  limits.request = milliseconds(300);
  Open(limits);
  std::vector<std::unique_ptr<RawClient>> silent;
  for (int i = 0; i < 8; ++i) {
    silent.push_back(std::make_unique<RawClient>(server->Port()));
    silent.back()->Send("GET /");
  }
  EXPECT_TRUE(Client().Get(Path("/api/model"))) << "what holds a thread is ended after a while";
}

TEST_F(ServerTest, ConnectionsBeyondTheQueueAreRefusedAtOnce) {
  ServerLimits limits;
  limits.viewers = 1;
  limits.workers = 1;
  limits.waiting = 2;
  limits.request = milliseconds(3000);
  Open(limits);
  std::vector<std::unique_ptr<RawClient>> clients;
  for (int i = 0; i < 2; ++i) {
    clients.push_back(std::make_unique<RawClient>(server->Port()));
    clients.back()->Send("GET /");
  }
  std::this_thread::sleep_for(milliseconds(300));  // both threads are held now
  for (int i = 0; i < 2; ++i) clients.push_back(std::make_unique<RawClient>(server->Port()));
  RawClient last(server->Port());
  EXPECT_TRUE(last.ReadUntil("\r\n\r\n").starts_with("HTTP/1.1 503 "));
}

TEST_F(ServerTest, RequestsOfAnySizeAreBounded) {
  ServerLimits limits;
  limits.idle = milliseconds(300);
  limits.request = milliseconds(2000);  // a body that is refused is still waited for
  Open(limits);
  const std::string post = "POST /" + std::string(kWord) + "/api/whatif HTTP/1.1\r\nHost: 127.0.0.1\r\n";
  RawClient large(server->Port());
  large.Send(post + "Content-Length: 99999999\r\n\r\n");
  EXPECT_TRUE(large.HasEnded());

  RawClient endless(server->Port());
  endless.Send(post + "Transfer-Encoding: chunked\r\n\r\n");
  const std::string chunk = "10000\r\n" + std::string(0x10000, ' ') + "\r\n";
  for (int i = 0; i < 40; ++i) endless.Send(chunk);
  EXPECT_TRUE(endless.HasEnded());

  RawClient heads(server->Port());
  heads.Send(Head("/api/model"));
  for (int i = 0; i < 40000; ++i) heads.Send("X-" + std::to_string(i) + ": " + std::string(100, 'x') + "\r\n");
  EXPECT_TRUE(heads.HasEnded());

  RawClient path(server->Port());
  path.Send("GET /" + std::string(100000, 'a') + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
  EXPECT_TRUE(path.HasEnded());
  EXPECT_TRUE(Client().Get(Path("/api/model")));
}

TEST_F(ServerTest, GarbageHarmsNobody) {
  Open();
  for (const std::string& garbage :
       {std::string("\0\1\2\3\r\n\r\n", 8), std::string("GET\r\n\r\n"), std::string("\r\n\r\n\r\n"),
        "POST /" + std::string(kWord) + "/api/whatif HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: -1\r\n\r\n",
        "GET /" + std::string(kWord) + "/%00%ff%zz HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"}) {
    RawClient client(server->Port());
    client.Send(garbage);
    client.ReadUntil("\r\n\r\n", milliseconds(500));
  }
  EXPECT_TRUE(Client().Get(Path("/api/model")));
}

TEST_F(ServerTest, GivesNoPartsOfAnswers) {
  Open();
  httplib::Client client = Client();
  const auto whole = client.Get(Path("/page.js"));
  const auto parts = client.Get(Path("/page.js"), {{"Range", "bytes=0-1,0-1,0-1"}});
  ASSERT_TRUE(whole && parts);
  EXPECT_EQ(parts->status, 200);
  EXPECT_EQ(parts->body, whole->body);
}

TEST_F(ServerTest, BodyThatNobodyReadsIsNoRequest) {
  Open();
  RawClient client(server->Port());
  const std::string smuggled = Head("/api/model") + "\r\n";
  client.Send("GET /other HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: " + std::to_string(smuggled.size()) +
              "\r\n\r\n" + smuggled);
  EXPECT_EQ(client.ReadUntil("what nobody sends").find("\"program\""), std::string::npos);
}

TEST_F(ServerTest, TakenPortIsAnError) {
  Open();
  const auto second = Server::Open(*site, hub, "127.0.0.1", server->Port());
  ASSERT_FALSE(second.has_value());
  EXPECT_EQ(second.error().code, analysis::ErrorCode::kFile);
  EXPECT_TRUE(second.error().message.starts_with("127.0.0.1:" + std::to_string(server->Port()) + ": can't listen"))
      << second.error().message;
  EXPECT_FALSE(Server::Open(*site, hub, "192.0.2.1", 0).has_value());
}

TEST_F(ServerTest, EndsAtOnceWithViewersAndIdleConnections) {
  Open();
  const auto viewer = Watch();
  const RawClient idle(server->Port());
  const RawClient begun(server->Port());
  begun.Send("GET /");
  const RawClient stalled(server->Port(), 4096);
  for (int i = 0; i < 200; ++i) stalled.Send(Head("/page.js") + "\r\n");  // reads none of the answers
  const auto begin = steady_clock::now();
  server.reset();
  EXPECT_LT(steady_clock::now() - begin, std::chrono::seconds(20));
  EXPECT_TRUE(viewer->HasEnded());
}

TEST_F(ServerTest, ManyViewersAskWhileCommitsCome) {
  Open();
  std::atomic<int> wrong = 0;
  std::atomic<bool> ended = false;
  std::vector<std::thread> viewers;
  for (int i = 0; i < 4; ++i) {
    viewers.emplace_back([&, i] {
      const std::string viewer = "viewer000000000" + std::to_string(i);
      const Json event = {{"table", "CB"}, {"id", i % 2 == 0 ? "B1" : "B2"}, {"open", true}};
      const Json list = {{"viewer", viewer}, {"events", Json::array({event})}};
      while (!ended) {
        httplib::Client client = Client();
        const auto tried = client.Post(Path("/api/whatif"), list.dump(), "application/json");
        const auto own = client.Get(Path("/api/state?viewer=" + viewer));
        const auto all = client.Get(Path("/api/station?id=S2"));
        for (const auto* answer : {&tried, &own, &all}) wrong += !*answer || (*answer)->status != 200;
      }
    });
  }
  for (int i = 0; i < 20; ++i) {
    Switch(3, i % 2 != 0, "D2");
    live->Look();
  }
  ended = true;
  for (std::thread& viewer : viewers) viewer.join();
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(live->Now()->Version(), 21);
}

}  // namespace
}  // namespace dtsdb::page::test
